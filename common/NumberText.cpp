#include "common/NumberText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <system_error>

#include "common/DecimalDigits.h"
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

__extension__ using Uint128 = unsigned __int128;

constexpr std::uint64_t kTenToEight = 100'000'000;
constexpr int kMostDigits = 17;
/// As many as an integer below 2^51 always holds.
constexpr int kOrdinaryDigits = 15;

/// The eight decimal digits of `value`, the first one in the lowest byte.
std::uint64_t eightDigits(std::uint32_t value) {
    return kFourDigits[value / 10'000] | static_cast<std::uint64_t>(kFourDigits[value % 10'000]) << 32;
}

/// What `rounded` is to become, which lies half a unit from `product`, the rounded value * power: the exact
/// product lies on the one side or the other, or there is a tie, which is even already.
std::int64_t besideHalf(std::int64_t rounded, double half, double value, double power, double product) {
    const double rest = std::fma(value, power, -product);
    return rounded + static_cast<int>(half > 0.0 && rest > 0.0) - static_cast<int>(half < 0.0 && rest < 0.0);
}

static_assert(std::endian::native == std::endian::little, "digits are stored as little-endian words");

/// The digits of a number, and the power of ten that the first one counts.
struct Rounded {
    std::uint64_t integer;
    int exponent;
};

/// Puts 1 to 15 digits down, with a point between them or in front, for exponents from -4 to digits - 1, and
/// without zeros at the end; returns their end.
[[gnu::always_inline]] inline char* putDigits(char* out, const Rounded& rounded, int digits) {
    const auto [integer, exponent] = rounded;
    // All sixteen digits in one word, the first in its lowest byte; those in front that are not asked for
    // are shifted out. Words, not bytes in memory: reading back what was just written in parts is slow.
    constexpr std::uint64_t zeros = 0x30303030'30303030ULL;
    const std::uint64_t low = eightDigits(static_cast<std::uint32_t>(integer % kTenToEight));
    const std::uint64_t middle = eightDigits(static_cast<std::uint32_t>(integer / kTenToEight));
    const Uint128 text = (static_cast<Uint128>(low | zeros) << 64 | (middle | zeros)) >> 8 * (16 - digits);
    // Zeros at the end are not written; the last digit is in the highest byte.
    const int used = digits - (low != 0 ? std::countl_zero(low) / 8 : 8 + std::countl_zero(middle) / 8);
    if (exponent < 0) {
        std::memcpy(out, "0.0000", 6);
        out += 1 - exponent;
        std::memcpy(out, &text, sizeof text);
        return out + used;
    }
    const int whole = exponent + 1;
    std::memcpy(out, &text, sizeof text);
    if (used <= whole) return out + whole;
    out[whole] = '.';
    const Uint128 fraction = text >> 8 * whole;
    std::memcpy(out + whole + 1, &fraction, sizeof fraction);
    return out + used + 1;
}

/// Numbers of everyday size; false for all others.
///
/// value * 10^n is an integer of all digits once rounded. The double product lies within half its last bit
/// of the exact one, and an odd multiple of one half is a double of that size; so both round to the same
/// integer, unless the double product is such a half itself.
[[gnu::always_inline]] inline bool roundOrdinary(double value, int digits, Rounded& rounded) {
    const int binary = static_cast<int>(std::bit_cast<std::uint64_t>(value) >> 52 & 0x7ff) - 1023;
    // 1e-4 to 1e15: the decimal exponent is at least -5, and never more than the digits allow.
    if (binary < -14 || binary > 49 || digits > kOrdinaryDigits) return false;
    const double size = std::abs(value);
    // floor(log10(2) * binary) is the decimal exponent or one less.
    int exponent = binary * 1233 >> 12;
    exponent += static_cast<int>(size >= powerOfTen(exponent + 1));
    if (exponent < -4 || exponent > digits - 1) return false;

    const double power = powerOfTen(digits - 1 - exponent);
    const double product = size * power;
    // Adding 1.5 * 2^52 rounds to an integer, ties to even, and leaves it in the lowest bits.
    constexpr double shift = 0x1.8p52;
    const double shifted = product + shift;
    std::int64_t integer = std::bit_cast<std::int64_t>(shifted) - std::bit_cast<std::int64_t>(shift);
    const double rest = product - (shifted - shift);
    if (std::abs(rest) == 0.5) [[unlikely]]
        integer = besideHalf(integer, rest, size, power, product);
    rounded = {static_cast<std::uint64_t>(integer), exponent};
    // Rounded up to the next power of ten: another exponent.
    return integer < static_cast<std::int64_t>(powerOfTen(digits));
}

/// Writes numbers of everyday size several times faster than the general algorithm. Returns null for all
/// others.
[[gnu::always_inline]] inline char* writeOrdinary(char* out, double value, int digits) {
    // With fewer digits a zero alone is as short.
    if (digits >= 4 || value == 0.0)
        if (char* const end = writeSmall(out, value)) return end;
    Rounded rounded;
    if (!roundOrdinary(value, digits, rounded)) return nullptr;
    *out = '-';
    return putDigits(out + static_cast<int>(value < 0.0), rounded, digits);
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

char* writeNumber(char* out, double value, int significantDigits) {
    // With the digits that nearly everybody asks for known at compile time.
    char* const end = significantDigits == kSignificantDigits
                          ? writeOrdinary(out, value, kSignificantDigits)
                          : writeOrdinary(out, value, std::clamp(significantDigits, 1, kMostDigits));
    if (end) [[likely]]
        return end;
    significantDigits = std::clamp(significantDigits, 1, kMostDigits);
    return std::to_chars(out, out + kMaxNumberLength, value, std::chars_format::general, significantDigits)
        .ptr;
}

std::string writeNumber(double value, int significantDigits) {
    std::array<char, kMaxNumberLength> buffer;
    return std::string(buffer.data(), writeNumber(buffer.data(), value, significantDigits));
}

std::string writeFixed(double value, int decimals) {
    if (!std::isfinite(value)) return {};
    std::array<char, std::numeric_limits<double>::max_exponent10 + 32> buffer;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::fixed, std::clamp(decimals, 0, 17));
    std::string_view text(buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data()));
    const bool isZero = text.find_first_of("123456789") == std::string_view::npos;
    if (isZero && text.starts_with('-')) text.remove_prefix(1);
    return std::string(text);
}

}  // namespace UTILS
