#pragma once

#include <string>

#include "model/ShapeState.h"

namespace OverlayEditor {

/// What was done to a shape, as users call it: "move a point of Circle 1".
/// \param before,after null where there was, or is, no such shape; not both
std::string stepName(const ShapeState* before, const ShapeState* after);

}  // namespace OverlayEditor
