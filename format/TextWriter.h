#pragma once

#include <array>
#include <iosfwd>
#include <span>
#include <string_view>

#include "common/Vec3.h"
#include "format/Color.h"

namespace halCore::ZEL {

/// Formats into a buffer and hands it to the stream in blocks; the rest goes when the writer dies.
/// Numbers follow the stream's precision and flags, but no locale. A failure shows in the stream's state;
/// nothing throws.
class TextWriter {
  public:
    explicit TextWriter(std::ostream& out);
    ~TextWriter() { flush(); }
    TextWriter(const TextWriter&) = delete;
    TextWriter& operator=(const TextWriter&) = delete;

    TextWriter& text(std::string_view text);
    TextWriter& number(double value);
    TextWriter& integer(long long value);
    TextWriter& color(const Color& color) { return text(color.serialize()); }
    TextWriter& trueFalse(bool value) { return text(value ? "true" : "false"); }

    /// Whole lines: the keyword, its blank included, and three numbers each.
    TextWriter& lines(std::string_view keyword, std::span<const Vec3> numbers);
    TextWriter& line(std::string_view keyword, const Vec3& numbers) { return lines(keyword, {&numbers, 1}); }

    TextWriter& space() { return character(' '); }
    TextWriter& endLine() { return character('\n'); }

    void flush();

    std::ostream& stream() const { return out_; }

  private:
    TextWriter& character(char c) {
        if (used_ == buffer_.size()) flush();
        buffer_[used_++] = c;
        return *this;
    }
    TextWriter& numberByStream_(double value);
    void send_(std::string_view text);

    std::ostream& out_;
    bool general_;
    int significantDigits_;
    std::size_t used_ = 0;
    std::array<char, 4096> buffer_;
};

}  // namespace halCore::ZEL
