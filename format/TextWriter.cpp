#include "format/TextWriter.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <locale>
#include <ostream>
#include <sstream>

#include "common/NumberLines.h"
#include "common/NumberText.h"

namespace halCore::ZEL {
namespace {

constexpr auto kUnusualFlags =
    std::ios_base::floatfield | std::ios_base::showpoint | std::ios_base::showpos | std::ios_base::uppercase;
constexpr int kMostSignificantDigits = 17;

}  // namespace

TextWriter::TextWriter(std::ostream& out)
    : out_(out),
      general_((out.flags() & kUnusualFlags) == 0 && out.precision() >= 0 &&
               out.precision() <= kMostSignificantDigits),
      significantDigits_(general_ ? std::max(static_cast<int>(out.precision()), 1) : 0) {}

TextWriter& TextWriter::text(std::string_view text) {
    if (text.size() > buffer_.size() - used_) flush();
    if (text.size() > buffer_.size()) {
        send_(text);
        return *this;
    }
    std::memcpy(buffer_.data() + used_, text.data(), text.size());
    used_ += text.size();
    return *this;
}

TextWriter& TextWriter::number(double value) {
    if (!general_) return numberByStream_(value);
    if (buffer_.size() - used_ < UTILS::kMaxNumberLength) flush();
    char* const begin = buffer_.data() + used_;
    used_ += static_cast<std::size_t>(UTILS::writeNumber(begin, value, significantDigits_) - begin);
    return *this;
}

TextWriter& TextWriter::lines(std::string_view keyword, std::span<const Vec3> numbers) {
    const std::size_t room = keyword.size() + UTILS::kMaxNumbersLength;
    if (!general_ || room > buffer_.size()) {
        for (const Vec3& three : numbers)
            text(keyword).number(three.x()).space().number(three.y()).space().number(three.z()).endLine();
        return *this;
    }
    while (!numbers.empty()) {
        if (buffer_.size() - used_ < room) flush();
        const auto some = numbers.first(std::min((buffer_.size() - used_) / room, numbers.size()));
        char* const begin = buffer_.data() + used_;
        used_ +=
            static_cast<std::size_t>(UTILS::writeLines(begin, keyword, some, significantDigits_) - begin);
        numbers = numbers.subspan(some.size());
    }
    return *this;
}

TextWriter& TextWriter::numberByStream_(double value) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream.flags(out_.flags());
    stream.precision(out_.precision());
    stream << value;
    return text(stream.str());
}

TextWriter& TextWriter::integer(long long value) {
    std::array<char, 24> digits;
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    return text(std::string_view(digits.data(), static_cast<std::size_t>(result.ptr - digits.data())));
}

void TextWriter::flush() {
    send_(std::string_view(buffer_.data(), used_));
    used_ = 0;
}

void TextWriter::send_(std::string_view text) {
    if (text.empty() || !out_.good()) return;
    try {
        const auto size = static_cast<std::streamsize>(text.size());
        if (out_.rdbuf()->sputn(text.data(), size) != size) out_.setstate(std::ios_base::badbit);
    } catch (...) {
        // A stream that is set to throw still tells of the failure by its state.
        try {
            out_.setstate(std::ios_base::badbit);
        } catch (...) {
        }
    }
}

}  // namespace halCore::ZEL
