#include "common/NumberText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
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

__extension__ using Uint128 = unsigned __int128;

constexpr int kMostDigits = 17;
/// As many as two words of eight hold.
constexpr int kOrdinaryDigits = 16;
/// The highest power of five that fits 64 bits.
constexpr int kMostFives = 27;

template <std::uint64_t Base, int Count>
constexpr std::array<std::uint64_t, Count> powers() {
    std::array<std::uint64_t, Count> result{};
    std::uint64_t power = 1;
    for (auto& entry : result) {
        entry = power;
        power *= Base;
    }
    return result;
}

constexpr auto kPowersOfFive = powers<5, kMostFives + 1>();
constexpr auto kPowersOfTen = powers<10, kMostDigits + 1>();

constexpr int kLeastPower = -4;
constexpr double kDecimalPowers[] = {1e-4, 1e-3, 1e-2, 1e-1, 1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,
                                     1e7,  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17};

/// mantissa * 2^exponent * 10^scale to the nearest integer, ties to even. Exact: the product of a
/// 53-bit mantissa and 5^scale fits 128 bits, and the rest is a shift. The result has at most 18 digits.
std::uint64_t scaledInteger(std::uint64_t mantissa, int exponent, int scale) {
    const Uint128 product = static_cast<Uint128>(mantissa) * kPowersOfFive[static_cast<std::size_t>(scale)];
    const int shift = -(exponent + scale);
    if (shift <= 0) return static_cast<std::uint64_t>(product << -shift);
    auto integer = static_cast<std::uint64_t>(product >> shift);
    const Uint128 rest = product - (static_cast<Uint128>(integer) << shift);
    const Uint128 half = static_cast<Uint128>(1) << (shift - 1);
    // Without a branch, which nobody could predict.
    integer += static_cast<std::uint64_t>((rest > half) | ((rest == half) & ((integer & 1) != 0)));
    return integer;
}

/// The eight decimal digits of `value`, the first one in the lowest byte: the halves, then the quarters,
/// then the digits are taken apart in parallel.
std::uint64_t eightDigits(std::uint64_t value) {
    const std::uint64_t fours = value / 10000 | (value % 10000) << 32;
    const std::uint64_t hundreds = (fours * 10486 >> 20) & 0x0000007f'0000007fULL;
    const std::uint64_t twos = ((fours - 100 * hundreds) << 16) + hundreds;
    const std::uint64_t tens = (twos * 103 >> 10) & 0x000f'000f'000f'000fULL;
    return tens + ((twos - 10 * tens) << 8);
}

static_assert(std::endian::native == std::endian::little, "digits are stored as little-endian words");

/// Writes numbers of everyday size, whose digits come from exact 128-bit arithmetic several times faster
/// than from the general algorithm. Returns null for all others.
char* writeOrdinary(char* out, double value, int digits) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const int biased = static_cast<int>(bits >> 52 & 0x7ff);
    if (value == 0.0) {
        if (std::signbit(value)) *out++ = '-';
        *out++ = '0';
        return out;
    }
    const int binary = biased - 1023;
    // 1e-5 to 1e17: the decimal exponent is at least -5, and never more than the digits allow.
    if (binary < -16 || binary > 56) return nullptr;
    const std::uint64_t mantissa = (bits & ((1ULL << 52) - 1)) | 1ULL << 52;

    // floor(log10(2) * binary) is the decimal exponent or one less.
    int exponent = binary * 1233 >> 12;
    exponent += static_cast<int>(std::abs(value) >=
                                 kDecimalPowers[static_cast<std::size_t>(exponent + 1 - kLeastPower)]);
    if (digits > kOrdinaryDigits || exponent < -4 || exponent > digits - 1 ||
        digits - 1 - exponent > kMostFives)
        return nullptr;
    std::uint64_t integer = scaledInteger(mantissa, biased - 1075, digits - 1 - exponent);
    if (integer == kPowersOfTen[static_cast<std::size_t>(digits)]) {
        // Rounded up to the next power of ten.
        integer /= 10;
        if (++exponent > digits - 1) return nullptr;
    }

    // All sixteen digits in one word, the first in its lowest byte; those in front that are not asked for
    // are shifted out. Words, not bytes in memory: reading back what was just written in parts is slow.
    constexpr std::uint64_t zeros = 0x30303030'30303030ULL;
    constexpr std::uint64_t tenToEight = 100'000'000;
    const std::uint64_t low = eightDigits(integer % tenToEight);
    const std::uint64_t middle = eightDigits(integer / tenToEight);
    const Uint128 text =
        (static_cast<Uint128>(low | zeros) << 64 | (middle | zeros)) >> 8 * (kOrdinaryDigits - digits);
    // Zeros at the end are not written; the last digit is in the highest byte.
    int used = digits - kOrdinaryDigits;
    if (low != 0)
        used += 16 - std::countl_zero(low) / 8;
    else if (middle != 0)
        used += 8 - std::countl_zero(middle) / 8;
    used = std::max(used, 1);

    *out = '-';
    out += static_cast<int>(value < 0.0);
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
    significantDigits = std::clamp(significantDigits, 1, kMostDigits);
    if (char* const end = writeOrdinary(out, value, significantDigits)) return end;
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
