#pragma once

#include "format/Placement.h"
#include "format/ZelShapes.h"
#include "globe/DrawList.h"

namespace sandbox {

// Shapes between parallels and meridians; part of appendGeometry().

void appendBox(const halCore::ZEL::LatLonAltBox& box, const halCore::ZEL::Placement& placement,
               DrawList& out);
/// Turned counter-clockwise about its middle, in the plane of longitudes shortened as they are there.
void appendPicture(const halCore::ZEL::ImageOverlay& shape, const halCore::ZEL::Placement& placement,
                   DrawList& out);

}  // namespace sandbox
