#include "format/TextFeed.h"

#include <algorithm>
#include <string>

namespace halCore::ZEL {

TextFeed::TextFeed(BlockReader& reader, std::string_view text) : reader_(reader), text_(text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (!text.starts_with(byteOrderMark)) return;
    done_ = byteOrderMark.size();
    reader_.skip(done_);
}

bool TextFeed::goOn(std::size_t bytes) {
    const std::size_t rest = text_.size() - done_;
    const std::size_t lineFeed = bytes < rest ? text_.find('\n', done_ + bytes) : std::string_view::npos;
    if (lineFeed != std::string_view::npos) {
        reader_.expect(text_.size() - (lineFeed + 1));
        reader_.readLines(text_.substr(done_, lineFeed + 1 - done_));
        done_ = lineFeed + 1;
        return false;
    }
    reader_.expect(0);
    // There is no line feed behind so many bytes.
    const std::size_t whole = std::max(text_.substr(0, done_ + std::min(bytes, rest)).rfind('\n') + 1, done_);
    reader_.readLines(text_.substr(done_, whole - done_));
    // Only a last line without a line feed is copied, to get one.
    if (whole != text_.size()) {
        std::string last;
        last.reserve(text_.size() - whole + 1);
        reader_.readLines(last.append(text_.substr(whole)).append(1, '\n'));
    }
    done_ = text_.size();
    return true;
}

}  // namespace halCore::ZEL
