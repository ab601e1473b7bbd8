#include "common/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>

#include "common/Strings.h"

namespace UTILS {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The trimmed text without its one leading '+'; empty when there is none to read.
std::string_view withoutPlus(std::string_view text) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') return {};
    }
    return text;
}

/// Whether a number that std::from_chars found out of range is too small rather than too large. The
/// text has the form digits[.digits][e[sign]digits], with a non-zero digit in it.
bool isUnderflow(std::string_view text) {
    const std::size_t mark = text.find_first_of("eE");
    const std::string_view mantissa = text.substr(0, mark);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t first = mantissa.find_first_of("123456789");
    if (first == std::string_view::npos) return true;
    const auto leading = first < point ? static_cast<std::int64_t>(point - first)
                                       : -static_cast<std::int64_t>(first - point - 1);
    std::int64_t exponent = 0;
    if (mark != std::string_view::npos) {
        std::string_view digits = text.substr(mark + 1);
        const bool negative = digits.starts_with('-');
        if (digits.starts_with('+')) digits.remove_prefix(1);
        if (std::from_chars(digits.data(), digits.data() + digits.size(), exponent).ec != std::errc())
            return negative;
        exponent = std::clamp<std::int64_t>(exponent, -(1LL << 60), 1LL << 60);
    }
    return leading + exponent < 0;
}

}  // namespace

std::optional<double> readNumber(std::string_view text) {
    text = withoutPlus(text);
    const std::string_view digits = text.starts_with('-') ? text.substr(1) : text;
    if (digits.empty() || !(isDigit(digits.front()) || digits.front() == '.')) return std::nullopt;
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (stop != end) return std::nullopt;
    if (error == std::errc::result_out_of_range)
        return isUnderflow(digits) ? std::optional(text.size() == digits.size() ? 0.0 : -0.0) : std::nullopt;
    return error == std::errc() ? std::optional(value) : std::nullopt;
}

std::optional<std::int64_t> readInteger(std::string_view text) {
    text = withoutPlus(text);
    std::int64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end) return std::nullopt;
    return value;
}

std::string writeNumber(double value, int significantDigits) {
    std::array<char, 64> buffer;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::general, std::clamp(significantDigits, 1, 17));
    return std::string(buffer.data(), result.ptr);
}

}  // namespace UTILS
