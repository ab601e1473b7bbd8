#pragma once

#include "globe/BoundingBox.h"
#include "globe/Camera.h"

namespace sandbox {

/// Whether all that lies in a box is so far on this side of the horizon that the shaders' `sight` answers 1
/// at each pixel of it.
bool isInPlainSight(const BoundingBox& box, const Camera& camera, double pixelRatio);

}  // namespace sandbox
