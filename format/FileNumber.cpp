#include "format/FileNumber.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "common/NumberText.h"
#include "common/Strings.h"

namespace halCore::ZEL {
namespace {

constexpr double kLargest = 1e300;
constexpr double kSmallest = 1e-250;

std::optional<double> limited(double value) {
    const double size = std::abs(value);
    if (!(size <= kLargest)) return std::nullopt;
    return size < kSmallest ? 0.0 : value;
}

std::string_view withoutQuotes(std::string_view text) {
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') return text.substr(1, text.size() - 2);
    return text;
}

/// Integers up to 2^53 and powers of ten up to 10^22 are doubles, so their quotient is the nearest double
/// to the decimal number (W. Clinger, How to read floating point numbers accurately, 1990).
constexpr std::uint64_t kLargestExactInteger = 1ULL << 53;
constexpr std::array<double, 23> kPowersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                 1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

}  // namespace

std::optional<double> readFileNumber(std::string_view text) {
    const std::optional<double> value = UTILS::readNumber(text);
    return value ? limited(*value) : std::nullopt;
}

std::string exactNumberText(double value) {
    std::array<char, 32> text;
    return std::string(text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr);
}

std::optional<double> readFileDegrees(std::string_view text, AngleKind kind) {
    double radians = 0.0;
    if (readAngle(withoutQuotes(text), radians, {.kind = kind}) != 0) return std::nullopt;
    return limited(radians);
}

std::optional<int> readFileInteger(std::string_view text) {
    const std::optional<std::int64_t> value = UTILS::readInteger(text);
    if (!value || *value < std::numeric_limits<int>::min() || *value > std::numeric_limits<int>::max())
        return std::nullopt;
    return static_cast<int>(*value);
}

bool scanPlainNumber(const char*& p, double& value) {
    const bool negative = *p == '-';
    if (negative || *p == '+') ++p;
    const char* const begin = p;
    std::uint64_t integer = 0;
    // Beyond 19 digits the sum overflows, harmlessly: the number is refused below.
    unsigned digit = 0;
    while ((digit = static_cast<unsigned>(*p - '0')) < 10) {
        integer = 10 * integer + digit;
        ++p;
    }
    std::ptrdiff_t digits = p - begin;
    std::ptrdiff_t decimals = 0;
    if (*p == '.') {
        const char* const fraction = ++p;
        while ((digit = static_cast<unsigned>(*p - '0')) < 10) {
            integer = 10 * integer + digit;
            ++p;
        }
        decimals = p - fraction;
        digits += decimals;
    }
    if (!UTILS::isBlank(*p) || digits == 0 || digits > 19) return false;
    if (integer <= kLargestExactInteger) {
        value = static_cast<double>(integer) / kPowersOfTen[static_cast<std::size_t>(decimals)];
    } else if (std::from_chars(begin, p, value).ptr != p) {
        return false;
    }
    if (negative) value = -value;
    return true;
}

}  // namespace halCore::ZEL
