#pragma once

#include <memory>

#include "format/ZelShape.h"

namespace halCore::ZEL {

/// What a shape of a file says beside what the editor has fields for: comments, line style, outline, altitude
/// mode and extrusion, tessellation, vertical datum, depth buffer, scale, offsets and what they follow, and a
/// label's outline and priority.
///
/// Takes a shape that was read for its extras alone: a list of points is empty from now on. Null when it has
/// none.
std::shared_ptr<const ZelShape> extrasOf(std::shared_ptr<ZelShape> shape);

/// Sets them on a shape, where it can have them.
void setExtras(const ZelShape& extras, ZelShape& shape);

}  // namespace halCore::ZEL
