#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The one pair of functions that reads and writes numbers. The process's locale never matters.
namespace UTILS {

/// Significant digits that every caller of ours asks for: a position in degrees comes back to well
/// under a millimetre, and 21.3 stays "21.3".
inline constexpr int kSignificantDigits = 15;

/// Reads a decimal number. Blanks around it and one leading '+' are fine; the whole text must be used.
/// Empty text, "nan", "inf", hexadecimal and values beyond a double's range are no numbers; a value too
/// small for a double reads as zero.
std::optional<double> readNumber(std::string_view text);

/// Reads a decimal integer by the same rules; a fraction or an exponent is no integer.
std::optional<std::int64_t> readInteger(std::string_view text);

/// Writes the shortest text that has `significantDigits` digits (as printf's %g does).
std::string writeNumber(double value, int significantDigits = kSignificantDigits);

/// Room for the longest text of a number, and for writing it in blocks.
inline constexpr std::size_t kMaxNumberLength = 40;

/// The same text at `out`, which has room for kMaxNumberLength characters; returns its end.
char* writeNumber(char* out, double value, int significantDigits = kSignificantDigits);

/// Writes `decimals` digits (0 to 17, clamped) behind the point, and no exponent. What rounds to zero has
/// no sign. Empty for a value that is not finite.
std::string writeFixed(double value, int decimals);

}  // namespace UTILS
