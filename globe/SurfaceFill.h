#pragma once

#include <optional>
#include <vector>

#include "common/Work.h"
#include "geo/GeodesicPath.h"
#include "globe/DrawList.h"

namespace sandbox {

using halCore::GeodeticPath;

/// Fills the area within a ring on the ellipsoid (the last point joins the first, in short straight
/// pieces already), by the even-odd rule. Concave and self-crossing rings, rings across 180° and around a
/// pole are all the same to it: it is flattened around `middle` (by default the ring's own), whose
/// antipode is always outside. A ring that crosses itself hundreds of times is filled in rows, of which
/// there are a hundred or two, or that share of them but at least a few: every crossing of it would be a
/// corner. So is a place where thousands of points lie within a millionth of the ring. The triangles follow
/// the surface; inside the ring they may dip below it, by `tolerance` metres or what the area's size calls
/// for. \param mesh an empty one
Work fillRing(const GeodeticPath& ring, Rgba color, std::optional<halCore::Vec3> middle, double tolerance,
              double share, DrawList::Mesh& mesh);

}  // namespace sandbox
