#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>

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

/// The value of eight hexadecimal digits in lower case, or nothing if they are none.
inline std::optional<std::uint32_t> hexadecimalOf(std::uint64_t word) {
    const std::uint64_t letters = word >> 6 & kEachByte;
    const std::uint64_t values = (word & 0x0f * kEachByte) + 9 * letters;
    // Written again they must be the same.
    const std::uint64_t beyondNine = (values + 6 * kEachByte) >> 4 & kEachByte;
    if ((values & 0xf0 * kEachByte) != 0 || values + '0' * kEachByte + ('a' - '0' - 10) * beyondNine != word)
        return std::nullopt;
    const std::uint64_t pairs = (values << 4 | values >> 8) & 0x00ff00ff'00ff00ffULL;
    return static_cast<std::uint32_t>((pairs & 0xff) << 24 | (pairs >> 16 & 0xff) << 16 |
                                      (pairs >> 32 & 0xff) << 8 | (pairs >> 48 & 0xff));
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
