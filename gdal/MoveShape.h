#pragma once

#include "format/ZelShape.h"

namespace exchange {

/// Moves a shape that has a place of its own by differences of latitude, longitude (radians) and altitude:
/// its centres, its sides, or the reference of its offsets. False, and nothing moved, for one that has none
/// or would lead beyond a pole.
bool moveShape(halCore::ZEL::ZelShape& shape, const halCore::Vec3& shift);

}  // namespace exchange
