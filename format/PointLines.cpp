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

/// How a number of a kind is read: where its digits are, so that the last one comes last, behind zeros, and
/// what they are divided by. The second divisor is that of the numbers' fourth, which is none.
struct Form {
    std::array<std::int8_t, kNumber> digits;
    std::array<double, 2> divisors;
};
static_assert(sizeof(Form) == 32);

/// For every number of digits before the point and every length, with the point. What has no digits is
/// divided by no number.
constexpr auto kForms = [] {
    std::array<std::array<Form, 2 * kNumber>, kNumber + 1> result{};
    for (unsigned whole = 0; whole <= kNumber; ++whole)
        for (unsigned length = whole; length <= kNumber; ++length) {
            Form& form = result[whole][length];
            const unsigned count = length - (whole < length ? 1 : 0);
            for (unsigned i = 0; i < kNumber; ++i) {
                // A negative index gives 0.
                const unsigned digit = i + count - kNumber;
                form.digits[i] =
                    i + count < kNumber ? -1 : static_cast<std::int8_t>(digit + (digit >= whole ? 1 : 0));
            }
            form.divisors = {count == 0 ? std::numeric_limits<double>::quiet_NaN() : 1.0, 1.0};
            for (unsigned i = whole; i < count; ++i) form.divisors[0] *= 10.0;
        }
    return result;
}();

/// For every choice of x, y and z the signs of those that are chosen.
constexpr auto kSigns = [] {
    std::array<std::array<double, 4>, 8> result{};
    for (unsigned chosen = 0; chosen < 8; ++chosen)
        for (unsigned i = 0; i < 4; ++i) result[chosen][i] = (chosen >> i & 1) != 0 ? -0.0 : 0.0;
    return result;
}();

/// A bit for each of some characters.
struct Letters {
    /// White space.
    std::uint64_t blanks;
    std::uint64_t digits;
    std::uint64_t points;
    std::uint64_t minus;
};

/// Keeps a constant where it is: it would be made again for every line.
[[OE_VECTORS, gnu::always_inline]] inline __m256i kept(__m256i constant) {
    asm("" : "+x"(constant));
    return constant;
}

/// Finds out what 32 characters are.
class LetterFinder {
  public:
    [[OE_VECTORS, gnu::always_inline]] Letters lettersOf(const char* text) const {
        const __m256i letters = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text));
        const __m256i values = _mm256_sub_epi8(letters, zero_);
        return {bits_(_mm256_cmpeq_epi8(_mm256_min_epu8(letters, blank_), letters)),
                bits_(_mm256_cmpeq_epi8(_mm256_min_epu8(values, nine_), values)),
                bits_(_mm256_cmpeq_epi8(letters, point_)), bits_(_mm256_cmpeq_epi8(letters, minus_))};
    }

    [[OE_VECTORS, gnu::always_inline]] LetterFinder()
        : blank_(kept(_mm256_set1_epi8(' '))),
          zero_(kept(_mm256_set1_epi8('0'))),
          nine_(kept(_mm256_set1_epi8(9))),
          point_(kept(_mm256_set1_epi8('.'))),
          minus_(kept(_mm256_set1_epi8('-'))) {}

  private:
    [[OE_VECTORS, gnu::always_inline]] static std::uint32_t bits_(__m256i mask) {
        return static_cast<std::uint32_t>(_mm256_movemask_epi8(mask));
    }

    __m256i blank_;
    __m256i zero_;
    __m256i nine_;
    __m256i point_;
    __m256i minus_;
};

/// The third bit that is set, and those above it.
[[OE_VECTORS, gnu::always_inline]] inline std::uint64_t fromThird(std::uint64_t bits) {
    return _blsr_u64(_blsr_u64(bits));
}

[[OE_VECTORS, gnu::always_inline]] inline unsigned takeFirst(std::uint64_t& bits) {
    const auto place = static_cast<unsigned>(_tzcnt_u64(bits));
    bits = _blsr_u64(bits);
    return place;
}

/// Where the numbers of a line begin, where their first digits end, and where they end: a bit for each.
struct Numbers {
    std::uint64_t begins;
    std::uint64_t points;
    std::uint64_t ends;
};

struct PlainDigits {
    /// Sixteen characters in their form's order.
    __m128i letters;
    const Form* form;
};

/// The digits of the first of the numbers of the characters at `p`, which is then taken from them.
[[OE_VECTORS, gnu::always_inline]] inline PlainDigits takeDigits(const char* p, Numbers& numbers) {
    unsigned begin = takeFirst(numbers.begins);
    const unsigned point = takeFirst(numbers.points);
    const unsigned end = takeFirst(numbers.ends);
    unsigned length = end - begin;
    unsigned whole = point - begin;
    if (length > kNumber) [[unlikely]] {
        // "0.123456789012345" has its 15 decimals.
        const bool isLongest = length == kNumber + 1 && p[begin] == '0' && whole == 1;
        begin += 1;
        whole = 0;
        length = isLongest ? kNumber : 0;
    }
    const Form& form = kForms[whole][length];
    return {_mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p + begin)),
                             _mm_loadu_si128(reinterpret_cast<const __m128i*>(form.digits.data()))),
            &form};
}

/// The numbers of x, y and z, and of nothing, before they are divided: pairs of digits, then fours, then
/// eights are put together, and the eights as doubles.
[[OE_VECTORS, gnu::always_inline]] inline __m256d integersOf(__m128i x, __m128i y, __m128i z) {
    const __m256i tens = _mm256_set1_epi16(10 | 1 << 8);
    const __m256i hundreds = _mm256_set1_epi32(100 | 1 << 16);
    const __m256i tenThousands = _mm256_set1_epi32(10'000 | 1 << 16);
    const __m256i values = _mm256_set1_epi8(0xf);
    const __m256i xy = _mm256_and_si256(_mm256_set_m128i(y, x), values);
    const __m256i zAlone = _mm256_zextsi128_si256(_mm_and_si128(z, _mm256_castsi256_si128(values)));
    const __m256i fours = _mm256_madd_epi16(_mm256_maddubs_epi16(xy, tens), hundreds);
    const __m256i foursOfZ = _mm256_madd_epi16(_mm256_maddubs_epi16(zAlone, tens), hundreds);
    const __m256i eights = _mm256_madd_epi16(_mm256_packus_epi32(fours, foursOfZ), tenThousands);
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
    const auto word = [mask = letters == 2 ? 0xffffffU : ~0U](const char* p) {
        std::uint32_t four;
        std::memcpy(&four, p, sizeof four);
        return four & mask;
    };
    const __m256d factor = _mm256_setr_pd(use.factor, use.factor, 1.0, 1.0);
    const __m256d infinity = _mm256_set1_pd(std::numeric_limits<double>::infinity());
    const __m256d largest =
        _mm256_blend_pd(infinity, _mm256_setr_pd(use.largestX, use.largestY, 0.0, 0.0), 0x3);

    const char* p = at;
    const std::ptrdiff_t window = static_cast<std::ptrdiff_t>(letters) + 2 * kHalfLine + kNumber;
    if (end - p < window || p[letters] != ' ') return 0;
    const std::uint32_t keyword = word(p);
    const char* const last = end - window;
    const LetterFinder finder;
    std::size_t count = 0;
    for (; count < kMost && p <= last && word(p) == keyword; ++count) {
        const char* const text = p + letters;
        Letters all = finder.lettersOf(text);
        // The first one is behind the keyword.
        Numbers numbers{.begins = 0, .points = 0, .ends = _blsr_u64(all.blanks)};
        std::uint64_t fromZ = fromThird(numbers.ends);
        if (fromZ == 0) {
            const Letters second = finder.lettersOf(text + kHalfLine);
            all.blanks |= second.blanks << kHalfLine;
            all.digits |= second.digits << kHalfLine;
            all.points |= second.points << kHalfLine;
            all.minus |= second.minus << kHalfLine;
            numbers.ends = _blsr_u64(all.blanks);
            fromZ = fromThird(numbers.ends);
            if (fromZ == 0) break;
        }
        const char* stop = text + _tzcnt_u64(fromZ);
        if (*stop == '\r') ++stop;
        if (*stop != '\n') break;
        // Added to the digits, the first one's bit goes through them to what is behind them.
        const auto behind = [&all](std::uint64_t firsts) { return (all.digits + firsts) & ~all.digits; };
        const std::uint64_t signs = all.minus & all.blanks << 1;
        numbers.begins = (all.blanks << 1) + signs;
        numbers.points = behind(numbers.begins);
        // Behind the digits, or behind a point and the digits behind it, each of them must have ended.
        const std::uint64_t reached = numbers.points | behind((numbers.points & all.points) << 1);
        if ((numbers.ends & ~(_blsr_u64(fromZ) | reached)) != 0) break;
        if (text[_tzcnt_u64(numbers.ends)] != ' ' || text[_tzcnt_u64(_blsr_u64(numbers.ends))] != ' ') break;
        const __m256d sign = _mm256_loadu_pd(kSigns[_pext_u64(signs, all.blanks << 1) & 7].data());
        const PlainDigits x = takeDigits(text, numbers);
        const PlainDigits y = takeDigits(text, numbers);
        const PlainDigits z = takeDigits(text, numbers);
        // Up to 2^53 they are exact, and so the quotients are the nearest doubles, as in `quotient`.
        const __m256d integers = integersOf(x.letters, y.letters, z.letters);
        const __m256d divisors =
            _mm256_set_m128d(_mm_loadu_pd(z.form->divisors.data()),
                             _mm_loadh_pd(_mm_load_sd(x.form->divisors.data()), y.form->divisors.data()));
        const __m256d values = _mm256_div_pd(integers, divisors);
        const __m256d fits = _mm256_and_pd(_mm256_cmp_pd(integers, _mm256_set1_pd(0x1p53), _CMP_LT_OQ),
                                           _mm256_cmp_pd(values, largest, _CMP_LE_OQ));
        if (_mm256_movemask_pd(fits) != 0xf) break;
        _mm256_storeu_pd(reinterpret_cast<double*>(points_.data() + count),
                         _mm256_mul_pd(_mm256_xor_pd(values, sign), factor));
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
