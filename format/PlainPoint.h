#pragma once

#include "common/Vec3.h"
#include "format/PlainNumber.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace halCore::ZEL {

#ifdef __SSE2__

/// What stands where in 64 characters: a bit for each, the lowest for the first.
struct CharacterMasks {
    std::uint64_t upToBlank = 0;
    std::uint64_t noDigit = 0;
    std::uint64_t point = 0;

    explicit CharacterMasks(const char* p) {
        for (unsigned i = 0; i < 64; i += 16) {
            const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i));
            const __m128i blanks = _mm_cmpeq_epi8(_mm_min_epu8(text, _mm_set1_epi8(' ')), text);
            const __m128i values = _mm_sub_epi8(text, _mm_set1_epi8('0'));
            const __m128i digits = _mm_cmpeq_epi8(_mm_min_epu8(values, _mm_set1_epi8(9)), values);
            const __m128i points = _mm_cmpeq_epi8(text, _mm_set1_epi8('.'));
            upToBlank |= bits_(blanks) << i;
            noDigit |= (bits_(digits) ^ 0xffff) << i;
            point |= bits_(points) << i;
        }
    }

  private:
    static std::uint64_t bits_(__m128i bytes) { return static_cast<std::uint64_t>(_mm_movemask_epi8(bytes)); }
};

/// Reads the number from `begin` to `end` of the 64 characters at `p`, as `scanPlainNumber` does; false
/// for one that is not so plain. 16 more characters can be read.
inline bool readPlainNumber(const char* p, const CharacterMasks& masks, unsigned begin, unsigned end,
                            double& value) {
    constexpr std::array<std::uint64_t, 9> powers = {1,      10,      100,      1000,     10000,
                                                     100000, 1000000, 10000000, 100000000};
    const bool negative = p[begin] == '-';
    begin += static_cast<unsigned>(negative);
    const std::uint64_t others = masks.noDigit >> begin;
    const auto whole = static_cast<unsigned>(std::countr_zero(others));
    unsigned decimals = 0;
    if (begin + whole != end) {
        // One more character that is no digit: the point.
        const auto behind = static_cast<unsigned>(std::countr_zero(others & (others - 1)));
        if ((masks.point >> (begin + whole) & 1) == 0 || begin + behind != end) return false;
        decimals = end - begin - whole - 1;
    }
    if (whole == 0 || whole > 8 || decimals > 16) return false;
    std::uint64_t integer = numberOf(loadEight(p + begin), whole);
    const char* fraction = p + begin + whole + 1;
    unsigned rest = decimals;
    if (rest > 8) {
        integer = integer * powers[8] + numberOf(loadEight(fraction), 8);
        fraction += 8;
        rest -= 8;
    }
    integer = integer * powers[rest] + numberOf(loadEight(fraction), rest);
    if (whole + decimals > 19 || integer > 1ULL << 53) return false;
    value = quotient(integer, decimals);
    value = negative ? -value : value;
    return true;
}

/// Reads three plain numbers, each behind one blank, from `p` to the end of the line, and returns its line
/// feed; null, and nothing done, for every other text. Where all numbers begin and end is found first, so
/// that the processor can read them at the same time. At `p` 80 characters can be read.
inline const char* readPlainPoint(const char* p, Vec3& point) {
    const CharacterMasks masks(p);
    std::uint64_t blanks = masks.upToBlank;
    unsigned ends[4];
    for (unsigned& end : ends) {
        if (blanks == 0) return nullptr;
        end = static_cast<unsigned>(std::countr_zero(blanks));
        blanks &= blanks - 1;
    }
    const char* stop = p + ends[3];
    if (*stop == '\r') ++stop;
    if (ends[0] != 0 || p[0] != ' ' || p[ends[1]] != ' ' || p[ends[2]] != ' ' || *stop != '\n')
        return nullptr;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    if (!readPlainNumber(p, masks, 1, ends[1], x) || !readPlainNumber(p, masks, ends[1] + 1, ends[2], y) ||
        !readPlainNumber(p, masks, ends[2] + 1, ends[3], z))
        return nullptr;
    point.set(x, y, z);
    return stop;
}

#else

/// Without vectors number by number is as good.
inline const char* readPlainPoint(const char*, Vec3&) {
    return nullptr;
}

#endif

}  // namespace halCore::ZEL
