#pragma once

#include <string>

namespace OverlayEditor {

/// The shown text of a caption without its tooltip, colon and trailing blanks: "Radius" of
/// "Radius:\tRadius for this circle". Messages name a field by it.
std::string captionName(const std::string& caption);

/// The caption of a widget that has only the tooltip: "\tRadius for this circle".
std::string tooltipOf(const std::string& caption);

}  // namespace OverlayEditor
