#pragma once

#include "format/ZelShapes.h"
#include "globe/DrawList.h"
#include "globe/Placement.h"

namespace sandbox {

/// Shapes about a centre: circles, ellipses, arcs, racetracks and round bodies; part of appendGeometry().
void appendCircular(const halCore::ZEL::CircularShape& shape, const Placement& placement, DrawList& out);

}  // namespace sandbox
