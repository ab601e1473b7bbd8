#pragma once

#include "format/Placement.h"
#include "format/ZelShapes.h"
#include "globe/DrawList.h"

namespace sandbox {

/// Shapes about a centre: circles, ellipses, arcs, racetracks and round bodies; part of appendGeometry().
void appendCircular(const halCore::ZEL::CircularShape& shape, const halCore::ZEL::Placement& placement,
                    DrawList& out);

}  // namespace sandbox
