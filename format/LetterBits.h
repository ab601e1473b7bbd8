#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace halCore::ZEL {

/// What 32 characters are, a bit for each, the first one's the lowest.
struct LetterBits {
    static constexpr std::ptrdiff_t kCount = 32;

    std::uint64_t blanks = 0;
    /// Below a blank: line ends, tabs.
    std::uint64_t controls = 0;
    /// ASCII letters.
    std::uint64_t upperCase = 0;
};

#ifdef __SSE2__

inline LetterBits letterBitsOf(const char* p) {
    const auto bits = [p](auto predicate) {
        const auto half = [&](std::size_t at) {
            const __m128i letters = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + at));
            return static_cast<std::uint32_t>(_mm_movemask_epi8(predicate(letters)));
        };
        return std::uint64_t{half(0) | half(16) << 16};
    };
    // Compared as signed they would be below zero from 0x80 on; the smaller one of two is found without a
    // sign.
    const auto isUpTo = [](__m128i letters, char last) {
        return _mm_cmpeq_epi8(_mm_min_epu8(letters, _mm_set1_epi8(last)), letters);
    };
    return {.blanks = bits([](__m128i letters) { return _mm_cmpeq_epi8(letters, _mm_set1_epi8(' ')); }),
            .controls = bits([&](__m128i letters) { return isUpTo(letters, ' ' - 1); }),
            .upperCase = bits([&](__m128i letters) {
                return isUpTo(_mm_sub_epi8(letters, _mm_set1_epi8('A')), 'Z' - 'A');
            })};
}

#else

inline LetterBits letterBitsOf(const char* p) {
    LetterBits result;
    for (std::ptrdiff_t i = 0; i < LetterBits::kCount; ++i) {
        const auto letter = static_cast<unsigned char>(p[i]);
        result.blanks |= static_cast<std::uint64_t>(letter == ' ') << i;
        result.controls |= static_cast<std::uint64_t>(letter < ' ') << i;
        result.upperCase |= static_cast<std::uint64_t>(letter >= 'A' && letter <= 'Z') << i;
    }
    return result;
}

#endif

/// The same of text that ends sooner, with line feeds behind it.
inline LetterBits letterBitsOf(const char* p, const char* end) {
    if (end - p >= LetterBits::kCount) return letterBitsOf(p);
    std::array<char, LetterBits::kCount> text;
    text.fill('\n');
    std::copy(p, end, text.begin());
    return letterBitsOf(text.data());
}

}  // namespace halCore::ZEL
