#include "format/PointLines.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#ifdef __x86_64__
#include <immintrin.h>
/// For functions that are called only where the processor has these instructions.
#define OE_VECTORS gnu::target("avx2,bmi,bmi2,fma,popcnt")
#endif

namespace halCore::ZEL {

#ifdef __x86_64__
namespace {

/// Characters that are loaded at once: those of half a line, and those of a number.
constexpr std::ptrdiff_t kHalfLine = 32;
constexpr unsigned kNumber = 16;
constexpr unsigned kMostDecimals = kNumber - 1;

/// For every number of digits before and behind the point: where the digits of a number are, so that the last
/// one comes last, behind zeros.
constexpr auto kDigits = [] {
    std::array<std::array<std::int8_t, kNumber>, (kNumber + 1) * (kMostDecimals + 1)> result{};
    for (unsigned whole = 0; whole <= kNumber; ++whole)
        for (unsigned decimals = 0; decimals <= kMostDecimals; ++decimals) {
            auto& from = result[whole * (kMostDecimals + 1) + decimals];
            const unsigned count = whole + decimals;
            for (unsigned i = 0; i < kNumber; ++i) {
                // A negative index gives 0.
                const unsigned digit = i + count - kNumber;
                from[i] =
                    i + count < kNumber ? -1 : static_cast<std::int8_t>(digit + (digit >= whole ? 1 : 0));
            }
        }
    return result;
}();

/// Powers of ten, and behind them the same with a minus.
constexpr auto kPowers = [] {
    std::array<double, 2 * (kMostDecimals + 1)> result{};
    double power = 1.0;
    for (std::size_t i = 0; i <= kMostDecimals; ++i, power *= 10.0) {
        result[i] = power;
        result[kMostDecimals + 1 + i] = -power;
    }
    return result;
}();

struct PlainDigits {
    /// Sixteen values from 0 to 9, the last digit's in the highest byte.
    __m128i values;
    /// What they are divided by.
    double divisor;
};

/// A bit for each of some characters.
struct Letters {
    /// White space.
    std::uint64_t blanks;
    std::uint64_t noDigits;
    std::uint64_t points;
    std::uint64_t minus;
};

[[OE_VECTORS, gnu::always_inline]] inline std::uint32_t bitsOf(__m256i mask) {
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(mask));
}

[[OE_VECTORS, gnu::always_inline]] inline Letters lettersOf(const char* text) {
    const __m256i letters = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text));
    const __m256i values = _mm256_sub_epi8(letters, _mm256_set1_epi8('0'));
    return {bitsOf(_mm256_cmpeq_epi8(_mm256_min_epu8(letters, _mm256_set1_epi8(' ')), letters)),
            ~bitsOf(_mm256_cmpeq_epi8(_mm256_min_epu8(values, _mm256_set1_epi8(9)), values)),
            bitsOf(_mm256_cmpeq_epi8(letters, _mm256_set1_epi8('.'))),
            bitsOf(_mm256_cmpeq_epi8(letters, _mm256_set1_epi8('-')))};
}

/// The third bit that is set, and those above it.
[[OE_VECTORS, gnu::always_inline]] inline std::uint64_t fromThird(std::uint64_t bits) {
    return _blsr_u64(_blsr_u64(bits));
}

/// What the characters of a line's numbers are that are no digits.
struct Others {
    /// All but a minus in front.
    std::uint64_t inside;
    std::uint64_t minus;
};

/// Finds the digits of the number from `begin` to `end` of the characters at `p`, which has at most one
/// character inside that is no digit. \param inside counts them
[[OE_VECTORS, gnu::always_inline]] inline bool findDigits(const char* p, unsigned begin, unsigned end,
                                                          const Others& others, PlainDigits& digits,
                                                          unsigned& inside) {
    const auto negative = static_cast<unsigned>(others.minus >> begin & 1);
    begin += negative;
    if (end - begin > kNumber) [[unlikely]] {
        // "0.123456789012345" has its 15 decimals.
        if (p[begin] != '0' || p[begin + 1] != '.' || end - begin > kNumber + 1) return false;
        ++begin;
    }
    const unsigned length = end - begin;
    const unsigned whole = std::min(static_cast<unsigned>(_tzcnt_u64(others.inside >> begin)), length);
    const unsigned point = whole < length ? 1 : 0;
    if (length == point) return false;
    inside += point;
    const unsigned decimals = length - whole - point;
    const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + begin));
    const auto& from = kDigits[whole * (kMostDecimals + 1) + decimals];
    digits.values = _mm_shuffle_epi8(_mm_sub_epi8(text, _mm_set1_epi8('0')),
                                     _mm_loadu_si128(reinterpret_cast<const __m128i*>(from.data())));
    digits.divisor = kPowers[negative * (kMostDecimals + 1) + decimals];
    return true;
}

/// The numbers of x, y and z, and of nothing, before they are divided: pairs of digits, then fours, then
/// eights are put together, and the eights as doubles.
[[OE_VECTORS, gnu::always_inline]] inline __m256d integersOf(const PlainDigits& x, const PlainDigits& y,
                                                             const PlainDigits& z) {
    const __m256i tens = _mm256_set1_epi16(10 | 1 << 8);
    const __m256i hundreds = _mm256_set1_epi32(100 | 1 << 16);
    const __m256i tenThousands = _mm256_set1_epi32(10'000 | 1 << 16);
    const __m256i xy = _mm256_set_m128i(y.values, x.values);
    const __m256i fours = _mm256_madd_epi16(_mm256_maddubs_epi16(xy, tens), hundreds);
    const __m128i foursOfZ = _mm_madd_epi16(_mm_maddubs_epi16(z.values, _mm256_castsi256_si128(tens)),
                                            _mm256_castsi256_si128(hundreds));
    const __m256i eights =
        _mm256_madd_epi16(_mm256_packus_epi32(fours, _mm256_zextsi128_si256(foursOfZ)), tenThousands);
    // The first eights of all, then the second ones.
    const __m256i sorted = _mm256_permutevar8x32_epi32(eights, _mm256_setr_epi32(0, 4, 2, 6, 1, 5, 3, 7));
    const __m256d first = _mm256_cvtepi32_pd(_mm256_castsi256_si128(sorted));
    const __m256d second = _mm256_cvtepi32_pd(_mm256_extracti128_si256(sorted, 1));
    return _mm256_fmadd_pd(first, _mm256_set1_pd(1e8), second);
}

}  // namespace

bool PointLines::canRead() {
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
           __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("fma") &&
           __builtin_cpu_supports("popcnt");
}

[[OE_VECTORS]] std::size_t PointLines::readVectors_(const char*& at, const char* end, std::size_t letters,
                                                    const Use& use) {
    const auto word = [letters](const char* p) {
        std::uint32_t four;
        std::memcpy(&four, p, sizeof four);
        return letters == 2 ? four & 0xffffff : four;
    };
    const __m256d factor = _mm256_setr_pd(use.factor, use.factor, 1.0, 1.0);
    const __m256d infinity = _mm256_set1_pd(std::numeric_limits<double>::infinity());
    const __m256d largest =
        _mm256_blend_pd(infinity, _mm256_setr_pd(use.largestX, use.largestY, 0.0, 0.0), 0x3);
    const __m256d sign = _mm256_set1_pd(-0.0);

    const char* p = at;
    if (end - p < 4 || p[letters] != ' ') return 0;
    const std::uint32_t keyword = word(p);
    const std::ptrdiff_t window = static_cast<std::ptrdiff_t>(letters) + 2 * kHalfLine + kNumber;
    std::size_t count = 0;
    for (; count < kMost && end - p >= window && word(p) == keyword; ++count) {
        const char* const text = p + letters;
        Letters all = lettersOf(text);
        // Behind the keyword, x, y and z.
        std::uint64_t behindZ = fromThird(_blsr_u64(all.blanks));
        if (behindZ == 0) {
            const Letters second = lettersOf(text + kHalfLine);
            all.blanks |= second.blanks << kHalfLine;
            all.noDigits |= second.noDigits << kHalfLine;
            all.points |= second.points << kHalfLine;
            all.minus |= second.minus << kHalfLine;
            behindZ = fromThird(_blsr_u64(all.blanks));
            if (behindZ == 0) break;
        }
        const std::uint64_t behindX = _blsr_u64(all.blanks);
        const auto endOfX = static_cast<unsigned>(_tzcnt_u64(behindX));
        const auto endOfY = static_cast<unsigned>(_tzcnt_u64(_blsr_u64(behindX)));
        const auto endOfZ = static_cast<unsigned>(_tzcnt_u64(behindZ));
        if (text[endOfX] != ' ' || text[endOfY] != ' ') break;
        const char* stop = text + endOfZ;
        if (*stop == '\r') ++stop;
        if (*stop != '\n') break;
        Others others;
        others.minus = all.minus & all.blanks << 1;
        others.inside = _bzhi_u64(all.noDigits, endOfZ) & ~(all.blanks | others.minus);
        PlainDigits x;
        PlainDigits y;
        PlainDigits z;
        unsigned inside = 0;
        if (!findDigits(text, 1, endOfX, others, x, inside) ||
            !findDigits(text, endOfX + 1, endOfY, others, y, inside) ||
            !findDigits(text, endOfY + 1, endOfZ, others, z, inside))
            break;
        // Each of them has one point or none, and nothing else.
        if ((others.inside & ~all.points) != 0 || _mm_popcnt_u64(others.inside) != inside) break;
        // Up to 2^53 they are exact, and so the quotients are the nearest doubles, as in `quotient`.
        const __m256d integers = integersOf(x, y, z);
        const __m256d values = _mm256_div_pd(integers, _mm256_setr_pd(x.divisor, y.divisor, z.divisor, 1.0));
        const __m256d fits =
            _mm256_and_pd(_mm256_cmp_pd(integers, _mm256_set1_pd(0x1p53), _CMP_LT_OQ),
                          _mm256_cmp_pd(_mm256_andnot_pd(sign, values), largest, _CMP_LE_OQ));
        if (_mm256_movemask_pd(fits) != 0xf) break;
        _mm256_storeu_pd(reinterpret_cast<double*>(points_.data() + count), _mm256_mul_pd(values, factor));
        p = stop + 1;
    }
    at = p;
    return count;
}

#else

bool PointLines::canRead() {
    return false;
}

std::size_t PointLines::readVectors_(const char*&, const char*, std::size_t, const Use&) {
    return 0;
}

#endif

std::span<const Vec3> PointLines::read(const char*& p, const char* end, std::size_t letters, const Use& use) {
    static const bool hasVectors = canRead();
    return std::span(points_).first(hasVectors ? readVectors_(p, end, letters, use) : 0);
}

}  // namespace halCore::ZEL
