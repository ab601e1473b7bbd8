#pragma once

#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>

#include "common/Strings.h"
#include "format/EightBytes.h"

namespace halCore::ZEL {

/// The digits from `p` on, put behind those that `integer` has. Returns how many there were. Beyond 19 the
/// sum overflows, harmlessly, for the number is refused then.
inline std::ptrdiff_t scanDigits(const char*& p, const char* end, std::uint64_t& integer) {
    constexpr std::array<std::uint64_t, 9> powers = {1,      10,      100,      1000,     10000,
                                                     100000, 1000000, 10000000, 100000000};
    const char* const begin = p;
    while (end - p >= 8) {
        const std::uint64_t word = loadEight(p);
        const unsigned count = countDigits(word);
        integer = integer * powers[count] + numberOf(word, count);
        p += count;
        if (count < 8) return p - begin;
    }
    for (; *p >= '0' && *p <= '9'; ++p) integer = 10 * integer + static_cast<std::uint64_t>(*p - '0');
    return p - begin;
}

/// integer / 10^decimals, for integers up to 2^53 and at most 19 decimals. Both are doubles then, and so the
/// quotient is the nearest double to the number (W. Clinger, How to read floating point numbers accurately,
/// 1990).
inline double quotient(std::uint64_t integer, std::size_t decimals) {
    constexpr std::array<double, 20> powersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,
                                                    1e7,  1e8,  1e9,  1e10, 1e11, 1e12, 1e13,
                                                    1e14, 1e15, 1e16, 1e17, 1e18, 1e19};
    return static_cast<double>(static_cast<std::int64_t>(integer)) / powersOfTen[decimals];
}

/// Reads a plain decimal number ("-17.505557": no exponent, 19 digits at most) at `p`, moves `p` behind it,
/// and returns true; it must be followed by white space. For everything else it returns false, with `p`
/// anywhere in the text read. The text up to `end` must hold a line feed, where reading stops at the latest.
inline bool scanPlainNumber(const char*& p, const char* end, double& value) {
    const bool negative = *p == '-';
    p += static_cast<int>(negative | (*p == '+'));
    const char* const begin = p;
    std::uint64_t integer = 0;
    std::ptrdiff_t digits = scanDigits(p, end, integer);
    std::ptrdiff_t decimals = 0;
    if (*p == '.') {
        ++p;
        decimals = scanDigits(p, end, integer);
        digits += decimals;
    }
    if (!UTILS::isBlank(*p) || digits == 0 || digits > 19) return false;
    if (integer <= 1ULL << 53)
        value = quotient(integer, static_cast<std::size_t>(decimals));
    else if (std::from_chars(begin, p, value).ptr != p)
        return false;
    value = negative ? -value : value;
    return true;
}

}  // namespace halCore::ZEL
