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

#ifdef __x86_64__
#include <immintrin.h>
#endif

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
constexpr int kLeastPower = -4;
/// From 1 on they are exact.
constexpr double kDecimalPowers[] = {1e-4, 1e-3, 1e-2, 1e-1, 1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6, 1e7,
                                     1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};

double powerOfTen(int exponent) {
    return kDecimalPowers[static_cast<std::size_t>(exponent - kLeastPower)];
}

/// The digits of 0 to 9999, the first one in the lowest byte.
constexpr auto kFourDigits = [] {
    std::array<std::uint32_t, 10'000> result{};
    for (std::uint32_t i = 0; i < result.size(); ++i)
        result[i] = i / 1000 | i / 100 % 10 << 8 | i / 10 % 10 << 16 | i % 10 << 24;
    return result;
}();

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

#ifdef __x86_64__

/// For every number of digits before the point: where the characters are that follow each other, in a point
/// and fifteen digits.
constexpr auto kPointPlaces = [] {
    std::array<std::array<std::int8_t, 16>, kOrdinaryDigits + 1> result{};
    for (int whole = 0; whole <= kOrdinaryDigits; ++whole)
        for (int i = 0; i < 16; ++i)
            result[static_cast<std::size_t>(whole)][static_cast<std::size_t>(i)] =
                static_cast<std::int8_t>(i < whole    ? i + 1
                                         : i == whole ? 0
                                                      : i);
    return result;
}();

/// The 15 digits of two numbers at a time: eights are split into fours, these into pairs.
struct TwoTexts {
    /// Behind a point, those of the first number in the lower half.
    __m256i text;
    /// A bit for each character of both; none for a zero.
    std::uint32_t notZero;
};

[[gnu::target("avx2"), gnu::always_inline]] inline TwoTexts textsOf(std::uint64_t a, std::uint64_t b) {
    const auto eight = [](std::uint64_t value) { return static_cast<std::int64_t>(value); };
    const __m256i eights = _mm256_set_epi64x(eight(b % kTenToEight), eight(b / kTenToEight),
                                             eight(a % kTenToEight), eight(a / kTenToEight));
    // Divisions by multiplication: 2^45 / 10,000, 2^19 / 100 and 2^16 / 10 are exact enough for what is
    // divided.
    const __m256i firstFours =
        _mm256_srli_epi64(_mm256_mul_epu32(eights, _mm256_set1_epi64x(3'518'437'209)), 45);
    const __m256i lastFours =
        _mm256_sub_epi64(eights, _mm256_mul_epu32(firstFours, _mm256_set1_epi64x(10'000)));
    const __m256i fours = _mm256_or_si256(firstFours, _mm256_slli_epi64(lastFours, 32));
    const __m256i firstPairs = _mm256_srli_epi16(_mm256_mulhi_epu16(fours, _mm256_set1_epi16(5243)), 3);
    const __m256i lastPairs = _mm256_sub_epi16(fours, _mm256_madd_epi16(firstPairs, _mm256_set1_epi32(100)));
    const __m256i pairs = _mm256_or_si256(firstPairs, _mm256_slli_epi32(lastPairs, 16));
    const __m256i first = _mm256_mulhi_epu16(pairs, _mm256_set1_epi16(6554));
    const __m256i last = _mm256_sub_epi16(pairs, _mm256_maddubs_epi16(first, _mm256_set1_epi16(10)));
    const __m256i values = _mm256_or_si256(first, _mm256_slli_epi16(last, 8));
    const __m256i zeros = _mm256_cmpeq_epi8(values, _mm256_setzero_si256());
    // Of sixteen the first is 0, and gives its place to the point.
    const __m128i empty = _mm_insert_epi8(_mm_set1_epi8('0'), '.', 0);
    return {_mm256_or_si256(values, _mm256_broadcastsi128_si256(empty)),
            ~static_cast<std::uint32_t>(_mm256_movemask_epi8(zeros))};
}

/// Puts one of them down, as `putDigits` does.
[[gnu::target("avx2"), gnu::always_inline]] inline char* putText(char* out, __m128i text,
                                                                 std::uint32_t notZero, int exponent) {
    const int used = static_cast<int>(std::bit_width((notZero & 0xffff) | 1)) - 1;
    if (exponent < 0) [[unlikely]] {
        std::memcpy(out, "0.0000", 6);
        out += 1 - exponent;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_srli_si128(text, 1));
        return out + used;
    }
    const int whole = exponent + 1;
    const auto* const places = kPointPlaces[static_cast<std::size_t>(whole)].data();
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out),
                     _mm_shuffle_epi8(text, _mm_loadu_si128(reinterpret_cast<const __m128i*>(places))));
    return out + (used <= whole ? whole : used + 1);
}

#endif

/// Whole numbers below 10,000: of others a number that is not the same.
[[gnu::always_inline]] inline int smallOf(double size) {
    return static_cast<int>(std::min(9999.5, size));
}

inline bool isSmall(double value) {
    const double size = std::abs(value);
    return static_cast<double>(smallOf(size)) == size;
}

/// Zero and small whole numbers, as altitudes often are; null for others.
[[gnu::always_inline]] inline char* writeSmall(char* out, double value, int digits) {
    const double size = std::abs(value);
    // Nothing is decided by the sign, which nobody can foresee.
    const int few = digits >= 4 ? smallOf(size) : 0;
    if (static_cast<double>(few) != size) return nullptr;
    *out = '-';
    out += static_cast<int>(std::signbit(value));
    const std::uint32_t four = kFourDigits[static_cast<std::size_t>(few)];
    const int leading = few == 0 ? 3 : std::countr_zero(four) / 8;
    const std::uint32_t text = (four | 0x30303030U) >> 8 * leading;
    std::memcpy(out, &text, sizeof text);
    return out + 4 - leading;
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
    if (char* const end = writeSmall(out, value, digits)) return end;
    Rounded rounded;
    if (!roundOrdinary(value, digits, rounded)) return nullptr;
    *out = '-';
    return putDigits(out + static_cast<int>(value < 0.0), rounded, digits);
}

#ifdef __x86_64__

const bool kHasVectors = [] {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") != 0;
}();

/// As writeNumbers with 15 digits, for numbers of everyday size, the first two of which are not small and
/// whole; null for others.
[[gnu::target("avx2")]] char* writeThreeByVectors(char* out, double x, double y, double z) {
    Rounded a;
    Rounded b;
    if (isSmall(x) || isSmall(y) || !roundOrdinary(x, kSignificantDigits, a) ||
        !roundOrdinary(y, kSignificantDigits, b))
        return nullptr;
    const TwoTexts two = textsOf(a.integer, b.integer);
    *out = '-';
    out = putText(out + static_cast<int>(x < 0.0), _mm256_castsi256_si128(two.text), two.notZero, a.exponent);
    *out++ = ' ';
    *out = '-';
    out = putText(out + static_cast<int>(y < 0.0), _mm256_extracti128_si256(two.text, 1), two.notZero >> 16,
                  b.exponent);
    *out++ = ' ';
    if (char* const end = writeSmall(out, z, kSignificantDigits)) return end;
    Rounded c;
    if (!roundOrdinary(z, kSignificantDigits, c)) return nullptr;
    const TwoTexts one = textsOf(c.integer, c.integer);
    *out = '-';
    return putText(out + static_cast<int>(z < 0.0), _mm256_castsi256_si128(one.text), one.notZero,
                   c.exponent);
}

#endif

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

char* writeNumbers(char* out, double x, double y, double z, int significantDigits) {
#ifdef __x86_64__
    if (kHasVectors && significantDigits == kSignificantDigits)
        if (char* const end = writeThreeByVectors(out, x, y, z)) return end;
#endif
    out = writeNumber(out, x, significantDigits);
    *out++ = ' ';
    out = writeNumber(out, y, significantDigits);
    *out++ = ' ';
    return writeNumber(out, z, significantDigits);
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
