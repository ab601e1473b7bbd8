#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

/// Eight characters at once, the first in the lowest byte of a word.
namespace halCore::ZEL {

static_assert(std::endian::native == std::endian::little, "the first character is the lowest byte");

inline constexpr std::uint64_t kEachByte = 0x01010101'01010101ULL;
inline constexpr std::uint64_t kHighBits = 0x80 * kEachByte;

inline std::uint64_t loadEight(const char* p) {
    std::uint64_t word;
    std::memcpy(&word, p, 8);
    return word;
}

inline void storeEight(char* p, std::uint64_t word) {
    std::memcpy(p, &word, 8);
}

/// The first `count` (0 to 8) characters, zeros behind them.
inline std::uint64_t firstOf(std::uint64_t word, unsigned count) {
    return count == 0 ? 0 : word & ~0ULL >> (64 - 8 * count);
}

/// How many characters stand before the first one up to ' ' (8 when there is none).
inline unsigned countBeforeBlank(std::uint64_t word) {
    // The high bit of a byte says that its character is above ' ': those from 0x80 on have it already.
    const std::uint64_t above = ((word & ~kHighBits) + (0x7f - ' ') * kEachByte) | word;
    return static_cast<unsigned>(std::countr_zero(~above & kHighBits)) / 8;
}

/// ASCII letters in lower case.
inline std::uint64_t loweredEight(std::uint64_t word) {
    const std::uint64_t low = word & ~kHighBits;
    const std::uint64_t fromA = low + (0x80 - 'A') * kEachByte;
    const std::uint64_t beyondZ = low + (0x7f - 'Z') * kEachByte;
    const std::uint64_t upper = (fromA ^ beyondZ) & ~word & kHighBits;
    return word | upper >> 2;
}

/// How many characters are digits, from the first one on.
inline unsigned countDigits(std::uint64_t word) {
    const std::uint64_t values = word ^ '0' * kEachByte;
    // Above 9 the addition reaches the upper half of the byte.
    const std::uint64_t others = ((values + 6 * kEachByte) | values) & 0xf0 * kEachByte;
    return static_cast<unsigned>(std::countr_zero(others)) / 8;
}

/// The number that the first `count` (0 to 8) characters, all digits, make: pairs, then fours, then all
/// eight are put together, each step with one multiplication.
inline std::uint64_t numberOf(std::uint64_t word, unsigned count) {
    if (count == 0) return 0;
    // Moved to the end, with zeros in front.
    std::uint64_t digits = (word ^ '0' * kEachByte) << (64 - 8 * count);
    digits = digits * 10 + (digits >> 8);
    constexpr std::uint64_t mask = 0x000000ff'000000ffULL;
    return ((digits & mask) * (100 + (1000000ULL << 32)) + (digits >> 16 & mask) * (1 + (10000ULL << 32))) >>
           32;
}

}  // namespace halCore::ZEL
