#pragma once

#include <string>

namespace OverlayEditor {

/// The shown text of a caption without its tooltip, colon and trailing blanks: "Radius" of
/// "Radius:\tRadius for this circle". Messages name a field by it.
std::string captionName(const std::string& caption);

/// The caption of a widget that has only the tooltip: "\tRadius for this circle".
std::string tooltipOf(const std::string& caption);

/// A name that others have given, as it can stand in a caption or in a column of a list: with blanks for
/// tabs, line ends and what else cannot be seen.
std::string oneLine(std::string name);

}  // namespace OverlayEditor
