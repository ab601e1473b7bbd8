#pragma once

#include "format/ZelShapes.h"

namespace exchange {

/// A shape of a kind without any attribute; null for `None`.
halCore::ZEL::ZelShapePtr newShape(halCore::ZEL::ShapeType kind, bool relative);

/// Whether a shape's positions are offsets. Boxes and pictures stand between parallels and meridians,
/// whatever they say.
bool hasOffsets(const halCore::ZEL::ZelShape& shape);

}  // namespace exchange
