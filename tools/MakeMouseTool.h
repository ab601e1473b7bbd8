#pragma once

#include "model/CylinderShape.h"
#include "model/Preferences.h"
#include "model/ToolRetirement.h"

namespace OverlayEditor {

/// The mouse tool of a shape, one overload per concrete shape. The tool keeps the references. Null for a
/// kind that has none.
MouseToolPtr makeMouseTool(const Preferences& preferences, CylinderShape& shape);

}  // namespace OverlayEditor
