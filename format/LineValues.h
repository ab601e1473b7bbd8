#pragma once

#include <string>
#include <string_view>

#include "format/BlockLines.h"
#include "format/ShapeFields.h"

namespace halCore::ZEL {

/// A line with other values: keyword, blanks and whatever stands behind the values stay, and so do values
/// that are the same. Without its line end. \param before what the line says, null when that does not matter
std::string withValues(const BlockLines::Line& line, const ShapeField* before, const ShapeField& after);

}  // namespace halCore::ZEL
