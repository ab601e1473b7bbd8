#include "format/TextBuffer.h"

#include <atomic>
#include <locale>
#include <new>

namespace OverlayEditor {
namespace {

/// More than this is not kept between uses.
constexpr std::size_t kMostKept = 16U << 20U;

/// Taken and given back on any thread.
struct Spare {
    std::atomic<TextBuffer*> buffer = nullptr;
    ~Spare() { delete buffer.load(); }
} spare;

}  // namespace

TextBuffer::TextBuffer() : out_(&memory_), in_(&memory_) {
    out_.imbue(std::locale::classic());
    in_.imbue(std::locale::classic());
    lines_.attachTo(out_);
}

TextBuffer::Ptr TextBuffer::take() {
    Ptr buffer(spare.buffer.exchange(nullptr));
    if (!buffer) return Ptr(new TextBuffer);
    buffer->restart();
    return buffer;
}

void TextBuffer::restart() {
    memory_.text.clear();
    memory_.rewind();
    out_.clear();
}

void TextBuffer::GiveBack::operator()(TextBuffer* buffer) const {
    TextBuffer* none = nullptr;
    if (buffer->memory_.text.capacity() > kMostKept || !spare.buffer.compare_exchange_strong(none, buffer))
        delete buffer;
}

const std::string& TextBuffer::text() const {
    if (!out_) throw std::bad_alloc();
    return memory_.text;
}

std::istream& TextBuffer::in() {
    text();
    memory_.rewind();
    in_.clear();
    return in_;
}

TextBuffer::Memory::int_type TextBuffer::Memory::overflow(int_type c) {
    if (!traits_type::eq_int_type(c, traits_type::eof())) text += traits_type::to_char_type(c);
    return traits_type::not_eof(c);
}

std::streamsize TextBuffer::Memory::xsputn(const char* from, std::streamsize count) {
    text.append(from, static_cast<std::size_t>(count));
    return count;
}

TextBuffer::Memory::pos_type TextBuffer::Memory::seekoff(off_type offset, std::ios_base::seekdir from,
                                                         std::ios_base::openmode which) {
    if (!(which & std::ios_base::in)) return pos_type(off_type(-1));
    off_type base = 0;
    if (from == std::ios_base::cur) base = gptr() - eback();
    if (from == std::ios_base::end) base = egptr() - eback();
    const off_type target = base + offset;
    if (target < 0 || target > egptr() - eback()) return pos_type(off_type(-1));
    setg(eback(), eback() + target, egptr());
    return pos_type(target);
}

TextBuffer::Memory::pos_type TextBuffer::Memory::seekpos(pos_type to, std::ios_base::openmode which) {
    return seekoff(off_type(to), std::ios_base::beg, which);
}

}  // namespace OverlayEditor
