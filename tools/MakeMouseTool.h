#pragma once

#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/PolygonShape.h"
#include "model/Preferences.h"
#include "model/RectangleShape.h"
#include "model/ToolRetirement.h"

namespace OverlayEditor {

/// The mouse tool of a shape, one overload per concrete shape. The tool keeps the references.
/// Null for a circular shape of no subtype.
MouseToolPtr makeMouseTool(const Preferences& preferences, CylinderShape& shape);
MouseToolPtr makeMouseTool(const Preferences& preferences, OrbitShape& shape);
MouseToolPtr makeMouseTool(const Preferences& preferences, PolygonShape& shape);
MouseToolPtr makeMouseTool(const Preferences& preferences, RectangleShape& shape);
MouseToolPtr makeMouseTool(const Preferences& preferences, FreeDrawShape& shape);
MouseToolPtr makeMouseTool(const Preferences& preferences, AnnotationShape& shape);

}  // namespace OverlayEditor
