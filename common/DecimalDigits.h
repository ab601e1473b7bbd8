#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// What those who write numbers share.
namespace UTILS {

inline constexpr int kLeastPower = -4;
/// Powers of ten, the least of them first. From 1 on they are exact.
inline constexpr double kDecimalPowers[] = {1e-4, 1e-3, 1e-2, 1e-1, 1e0,  1e1,  1e2,  1e3,
                                            1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                            1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};

constexpr double powerOfTen(int exponent) {
    return kDecimalPowers[static_cast<std::size_t>(exponent - kLeastPower)];
}

/// The digits of 0 to 9999, the first one in the lowest byte.
inline constexpr auto kFourDigits = [] {
    std::array<std::uint32_t, 10'000> result{};
    for (std::uint32_t i = 0; i < result.size(); ++i)
        result[i] = i / 1000 | i / 100 % 10 << 8 | i / 10 % 10 << 16 | i % 10 << 24;
    return result;
}();

/// Writes zero and whole numbers below 10,000, as altitudes often are; null for others.
[[gnu::always_inline]] inline char* writeSmall(char* out, double value) {
    const double size = std::abs(value);
    // Of others a number that is not the same. Nothing is decided by the sign, which nobody can foresee.
    const int few = static_cast<int>(std::min(9999.5, size));
    if (static_cast<double>(few) != size) return nullptr;
    *out = '-';
    out += static_cast<int>(std::signbit(value));
    const std::uint32_t four = kFourDigits[static_cast<std::size_t>(few)];
    const int leading = few == 0 ? 3 : std::countr_zero(four) / 8;
    const std::uint32_t text = (four | 0x30303030U) >> 8 * leading;
    std::memcpy(out, &text, sizeof text);
    return out + 4 - leading;
}

}  // namespace UTILS
