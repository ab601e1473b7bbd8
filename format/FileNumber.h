#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "geo/AngleText.h"

/// Numbers as the format takes them.
namespace halCore::ZEL {

/// A decimal number. One beyond 1e300 is no number: it might overflow when its unit is applied. One
/// below 1e-250 is zero: it would lose its digits there.
std::optional<double> readFileNumber(std::string_view text);

/// The shortest text that reads back as the same number.
std::string exactNumberText(double value);

/// A latitude or longitude in degrees, decimal or with minutes and seconds; double quotes about the whole
/// are dropped. Radians.
std::optional<double> readFileDegrees(std::string_view text, AngleKind kind);

/// A decimal integer that fits an int.
std::optional<int> readFileInteger(std::string_view text);

}  // namespace halCore::ZEL
