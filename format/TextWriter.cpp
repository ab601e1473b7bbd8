#include "format/TextWriter.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <locale>
#include <ostream>
#include <sstream>

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

TextWriter& TextWriter::line(std::string_view keyword, double x, double y, double z) {
    constexpr std::size_t room = 3 * (UTILS::kMaxNumberLength + 1);
    if (!general_ || keyword.size() + room > buffer_.size())
        return text(keyword).number(x).space().number(y).space().number(z).endLine();
    if (buffer_.size() - used_ < keyword.size() + room) flush();
    char* p = std::copy(keyword.begin(), keyword.end(), buffer_.data() + used_);
    p = UTILS::writeNumbers(p, x, y, z, significantDigits_);
    *p++ = '\n';
    used_ = static_cast<std::size_t>(p - buffer_.data());
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
