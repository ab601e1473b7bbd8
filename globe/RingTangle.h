#pragma once

#include "common/Work.h"
#include "globe/FlatRing.h"

namespace sandbox {

/// Tells whether a ring crosses itself so often, hundreds of times, that triangles between the crossings
/// would be too many.
Work findTangle(const FlatRing& ring, bool& tangled);

}  // namespace sandbox
