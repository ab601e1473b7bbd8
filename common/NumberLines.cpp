#include "common/NumberLines.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "common/DecimalDigits.h"

#ifdef __x86_64__
#include <cpuid.h>
#include <immintrin.h>
/// For functions that are called only where the processor has these instructions.
#define OE_VECTORS gnu::target("avx2,fma,lzcnt")
#endif

namespace UTILS {

using halCore::Vec3;

namespace {

#ifdef __x86_64__

constexpr int kDigits = 15;
static_assert(kDigits == kSignificantDigits);

/// For every number of digits before the point: where the characters are that follow each other, in a point
/// and fifteen digits.
constexpr auto kPointPlaces = [] {
    std::array<std::array<std::int8_t, 16>, kDigits + 1> result{};
    for (int whole = 0; whole <= kDigits; ++whole)
        for (int i = 0; i < 16; ++i)
            result[static_cast<std::size_t>(whole)][static_cast<std::size_t>(i)] =
                static_cast<std::int8_t>(i < whole    ? i + 1
                                         : i == whole ? 0
                                                      : i);
    return result;
}();

/// Decimal exponents are counted from that of 1e-5 on, as numbers of everyday size are from 1e-4 to 1e15.
constexpr std::size_t kOfOne = 5;
/// That of all other numbers.
constexpr std::size_t kNone = kOfOne + kDigits;

/// Of every binary exponent: the decimal one of the least such number, and for a zero that of 1.
constexpr auto kLeastExponents = [] {
    std::array<std::uint8_t, 2048> result{};
    for (int i = 0; i < 2048; ++i) {
        const int binary = i - 1023;
        const bool isEveryday = binary >= -14 && binary <= 49;
        // floor(log10(2) * binary)
        const int decimal = isEveryday ? (binary * 1233 >> 12) + int{kOfOne} : int{kNone};
        result[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(i == 0 ? int{kOfOne} : decimal);
    }
    return result;
}();

/// Of every decimal exponent: the least number with the next one, and what leaves 15 digits before the point.
/// Of those that are not of everyday size no number has the next one, an infinite one neither.
struct Decimal {
    double next = std::numeric_limits<double>::quiet_NaN();
    double power = 0.0;
};
constexpr auto kDecimals = [] {
    std::array<Decimal, kNone + 1> result{};
    for (int i = 0; i < int{kNone}; ++i) {
        Decimal& decimal = result[static_cast<std::size_t>(i)];
        const int exponent = i - int{kOfOne};
        decimal.next = powerOfTen(exponent + 1);
        if (i > 0) decimal.power = powerOfTen(kDigits - 1 - exponent);
    }
    return result;
}();

/// The decimal exponent of a number. There is no branch: nobody could foresee it.
[[OE_VECTORS, gnu::always_inline]] inline std::size_t exponentOf(double value) {
    const std::size_t least = kLeastExponents[std::bit_cast<std::uint64_t>(value) >> 52 & 0x7ff];
    return least + static_cast<std::size_t>(std::abs(value) >= kDecimals[least].next);
}

/// The digits of two numbers from their eights: these are split into fours, and these into pairs.
[[OE_VECTORS, gnu::always_inline]] inline __m256i digitsOf(__m256i eights) {
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
    return _mm256_or_si256(first, _mm256_slli_epi16(last, 8));
}

/// The 15 digits of two numbers at a time.
struct TwoTexts {
    /// Behind a point, those of the first number in the lower half.
    __m256i text;
    /// A bit for each of these characters that is neither '0' nor the point.
    std::uint32_t notZero;
};

/// \param exponents those of the numbers \return false unless both are zero or of everyday size
[[OE_VECTORS, gnu::always_inline]] inline bool makeTexts(double a, double b, std::size_t exponentA,
                                                         std::size_t exponentB, TwoTexts& texts) {
    const __m128d size = _mm_andnot_pd(_mm_set1_pd(-0.0), _mm_setr_pd(a, b));
    const __m128d powers = _mm_setr_pd(kDecimals[exponentA].power, kDecimals[exponentB].power);
    // Adding 1.5 * 2^52 rounds the exact product to an integer, ties to even.
    const __m128d shift = _mm_set1_pd(0x1.8p52);
    const __m128d rounded = _mm_sub_pd(_mm_fmadd_pd(size, powers, shift), shift);
    // One that was rounded up to the next power of ten has another exponent.
    const __m128d fits = _mm_or_pd(_mm_cmpeq_pd(size, _mm_setzero_pd()),
                                   _mm_and_pd(_mm_cmpge_pd(rounded, _mm_set1_pd(powerOfTen(kDigits - 1))),
                                              _mm_cmplt_pd(rounded, _mm_set1_pd(powerOfTen(kDigits)))));
    if (_mm_movemask_pd(fits) != 0x3) [[unlikely]]
        return false;

    // The quotient of a half more is 5e-9 or farther from the next integer, and its error is 3e-9.
    const __m128d first = _mm_floor_pd(_mm_fmadd_pd(rounded, _mm_set1_pd(1e-8), _mm_set1_pd(5e-9)));
    const __m128d last = _mm_fnmadd_pd(first, _mm_set1_pd(1e8), rounded);
    const __m256i digits =
        digitsOf(_mm256_cvtepu32_epi64(_mm_unpacklo_epi32(_mm_cvttpd_epi32(first), _mm_cvttpd_epi32(last))));
    // Of sixteen the first is 0, and gives its place to the point.
    const __m256i empty = _mm256_broadcastsi128_si256(_mm_insert_epi8(_mm_set1_epi8('0'), '.', 0));
    texts.text = _mm256_or_si256(digits, empty);
    texts.notZero =
        static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpgt_epi8(digits, _mm256_setzero_si256())));
    return true;
}

/// Puts one of them down, with a point between its digits or in front, and without zeros at the end.
[[OE_VECTORS, gnu::always_inline]] inline char* putText(char* out, double value, std::size_t exponent,
                                                        __m128i text, std::uint32_t notZero) {
    *out = '-';
    out += std::bit_cast<std::uint64_t>(value) >> 63;
    const std::size_t used = 31 - _lzcnt_u32((notZero & 0xffff) | 1);
    if (exponent < kOfOne) [[unlikely]] {
        std::memcpy(out, "0.0000", 6);
        out += 1 + kOfOne - exponent;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_srli_si128(text, 1));
        return out + used;
    }
    const std::size_t whole = exponent - kOfOne + 1;
    const auto* const places = reinterpret_cast<const __m128i*>(kPointPlaces[whole].data());
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_shuffle_epi8(text, _mm_loadu_si128(places)));
    return out + (used <= whole ? whole : used + 1);
}

constexpr std::size_t kLongestStart = 16;

/// As writeLines with 15 digits, for what lines begin with up to kLongestStart.
[[OE_VECTORS]] char* writeLinesByVectors(char* out, std::string_view start, std::span<const Vec3> numbers) {
    std::array<char, kLongestStart> begin{};
    std::copy(start.begin(), start.end(), begin.begin());
    for (const Vec3& three : numbers) {
        std::memcpy(out, begin.data(), begin.size());
        out += start.size();
        const std::size_t x = exponentOf(three.x());
        const std::size_t y = exponentOf(three.y());
        TwoTexts two;
        if (makeTexts(three.x(), three.y(), x, y, two)) {
            out = putText(out, three.x(), x, _mm256_castsi256_si128(two.text), two.notZero);
            *out++ = ' ';
            out = putText(out, three.y(), y, _mm256_extracti128_si256(two.text, 1), two.notZero >> 16);
        } else {
            out = writeNumber(out, three.x(), kDigits);
            *out++ = ' ';
            out = writeNumber(out, three.y(), kDigits);
        }
        *out++ = ' ';
        const std::size_t z = exponentOf(three.z());
        if (char* const end = writeSmall(out, three.z())) out = end;
        // Twice, as valgrind does not know the move that clears the other half.
        else if (makeTexts(three.z(), three.z(), z, z, two))
            out = putText(out, three.z(), z, _mm256_castsi256_si128(two.text), two.notZero);
        else
            out = writeNumber(out, three.z(), kDigits);
        *out++ = '\n';
    }
    return out;
}

const bool kHasVectors = [] {
    __builtin_cpu_init();
    // Not all compilers know that one by name.
    unsigned a = 0, b = 0, c = 0, d = 0;
    const bool countsZeros = __get_cpuid(0x80000001, &a, &b, &c, &d) != 0 && (c & bit_LZCNT) != 0;
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") && countsZeros;
}();

#endif

}  // namespace

char* writeLines(char* out, std::string_view start, std::span<const Vec3> numbers, int significantDigits) {
#ifdef __x86_64__
    if (kHasVectors && significantDigits == kDigits && start.size() <= kLongestStart)
        return writeLinesByVectors(out, start, numbers);
#endif
    for (const Vec3& three : numbers) {
        out = std::copy(start.begin(), start.end(), out);
        out = writeNumber(out, three.x(), significantDigits);
        *out++ = ' ';
        out = writeNumber(out, three.y(), significantDigits);
        *out++ = ' ';
        out = writeNumber(out, three.z(), significantDigits);
        *out++ = '\n';
    }
    return out;
}

}  // namespace UTILS
