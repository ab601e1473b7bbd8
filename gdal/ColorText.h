#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "format/Color.h"

namespace exchange {

/// "#rrggbbaa", as OGR's styles have colours.
std::string textOfColor(const halCore::ZEL::Color& color);

/// Reads "#rrggbb", "#rrggbbaa", or a colour as in an overlay file.
std::optional<halCore::ZEL::Color> colorOfText(std::string_view text);

}  // namespace exchange
