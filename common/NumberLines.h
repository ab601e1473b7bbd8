#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "common/NumberText.h"
#include "common/Vec3.h"

namespace UTILS {

/// Room for a line of three numbers, what it begins with apart.
inline constexpr std::size_t kMaxNumbersLength = 3 * (kMaxNumberLength + 1);

/// Writes lines, each of which begins with `start` and has three numbers with blanks between them, at `out`,
/// which has room for them; returns their end. Each number's text is that of `writeNumber`; the three of a
/// line are worked out at the same time by vector instructions, where the processor has them.
char* writeLines(char* out, std::string_view start, std::span<const halCore::Vec3> numbers,
                 int significantDigits);

}  // namespace UTILS
