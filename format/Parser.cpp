#include "format/Parser.h"

#include <algorithm>
#include <cstring>
#include <istream>

#include "common/Strings.h"
#include "format/BlockReader.h"
#include "format/ColorNames.h"
#include "format/MessageSink.h"
#include "format/ShapeBuilder.h"
#include "format/TextFeed.h"
#include "geo/UnitsRegistry.h"

namespace halCore::ZEL {
namespace {

constexpr std::size_t kBlockSize = 1 << 16;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Bytes read, 0 at the end. A stream that is set to throw, or whose buffer throws, has just ended.
std::size_t readBytes(std::istream& in, char* to, std::size_t size) {
    try {
        in.read(to, static_cast<std::streamsize>(size));
    } catch (...) {
    }
    return static_cast<std::size_t>(in.gcount());
}

/// Bytes that a stream in memory, or its buffer, still holds.
std::size_t bytesReady(std::istream& in) {
    try {
        return static_cast<std::size_t>(std::max<std::streamsize>(in.rdbuf()->in_avail(), 0));
    } catch (...) {
        return 0;
    }
}

void passByteOrderMark(BlockReader& reader, std::string_view& text) {
    if (!text.starts_with(kByteOrderMark)) return;
    text.remove_prefix(kByteOrderMark.size());
    reader.skip(kByteOrderMark.size());
}

/// Hands whole lines to the reader; the beginning of a line waits for its rest.
class LineFeeder {
  public:
    explicit LineFeeder(BlockReader& reader) : reader_(reader) {}

    void readAll(std::istream& in) {
        while (true) {
            if (used_ == size_) grow_();
            const std::size_t got = readBytes(in, buffer_.get() + used_, size_ - used_);
            if (got == 0) break;
            reader_.expect(bytesReady(in));
            take_(got);
        }
        if (used_ == size_) grow_();
        buffer_[used_] = '\n';
        if (used_ != 0) feed_(used_ + 1);
    }

  private:
    void take_(std::size_t got) {
        // Only the new bytes are searched: a long line costs no more than many short ones.
        const std::string_view fresh(buffer_.get() + used_, got);
        const std::size_t last = fresh.rfind('\n');
        used_ += got;
        if (last == std::string_view::npos) return;
        const std::size_t whole = used_ - got + last + 1;
        feed_(whole);
        std::memmove(buffer_.get(), buffer_.get() + whole, used_ - whole);
        used_ -= whole;
    }

    void feed_(std::size_t size) {
        std::string_view text(buffer_.get(), size);
        if (atBegin_) passByteOrderMark(reader_, text);
        atBegin_ = false;
        reader_.readLines(text);
    }

    void grow_() {
        const std::size_t size = std::max(kBlockSize, 2 * size_);
        auto larger = std::make_unique_for_overwrite<char[]>(size);
        if (used_ != 0) std::memcpy(larger.get(), buffer_.get(), used_);
        buffer_ = std::move(larger);
        size_ = size;
    }

    BlockReader& reader_;
    std::unique_ptr<char[]> buffer_;
    std::size_t size_ = 0;
    std::size_t used_ = 0;
    bool atBegin_ = true;
};

}  // namespace

Parser::Parser() {
    initZelColors_();
}

void Parser::initZelColors_() {
    zelColors_ = kColorNames;
}

std::string_view Parser::colorNamed_(std::string_view name) const {
    if (const auto added = colors_.find(name); added != colors_.end()) return added->second;
    const auto known = std::ranges::find(zelColors_, name, &ColorName::name);
    return known != zelColors_.end() ? known->value : "0xff0000ff";
}

void Parser::addOverwriteColor(std::string_view name, std::string_view value) {
    colors_.insert_or_assign(UTILS::lowerCase(name), std::string(value));
}

template <typename Feed>
void Parser::parse_(Shapes& shapes, ParseReport* report, Feed feed) const {
    UnitsRegistry defaults;
    if (registry_ == nullptr) defaults.registerDefaultUnits();
    const MessageSink messages(report);
    BlockReader reader(*this, registry_ != nullptr ? *registry_ : defaults, shapes, messages);
    feed(reader);
    reader.finish();
}

void Parser::parse(std::istream& in, Shapes& shapes) const {
    parse_(shapes, nullptr, [&in](BlockReader& reader) { LineFeeder(reader).readAll(in); });
}

void Parser::parse(std::istream& in, Shapes& shapes, ParseReport& report) const {
    parse_(shapes, &report, [&in](BlockReader& reader) { LineFeeder(reader).readAll(in); });
}

void Parser::parse(std::string_view text, Shapes& shapes) const {
    parse_(shapes, nullptr, [text](BlockReader& reader) { TextFeed(reader, text).goOn(text.size()); });
}

void Parser::parse(std::string_view text, Shapes& shapes, ParseReport& report) const {
    parse_(shapes, &report, [text](BlockReader& reader) { TextFeed(reader, text).goOn(text.size()); });
}

std::shared_ptr<ZelShape> Parser::getShape_(ParsedShape& record, const UnitsRegistry& registry,
                                            const MessageSink& messages) const {
    return ShapeBuilder(record, registry, messages).build();
}

}  // namespace halCore::ZEL
