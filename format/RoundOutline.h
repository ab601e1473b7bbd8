#pragma once

#include <optional>
#include <vector>

#include "common/Vec3.h"
#include "geo/GeodesicPath.h"

namespace halCore::ZEL {

class CircularShape;
class Placement;

/// What a shape about a centre looks like from above: curves on the ellipsoid at the centre's altitude.
/// Angles of arcs are azimuths (clockwise from north). An elliptical shape has its major axis east-west and
/// its minor axis north-south, turned clockwise by the shape's heading.
struct RoundOutline {
    /// Joined by geodesics, end to end. One arc, or the two of a racetrack.
    std::vector<EllipticalArc> arcs;
    /// Whether the arcs enclose the area; if not, its border leads over the centre.
    bool whole = true;
    Vec3 center;
    /// Metres, before the placement's scale. From the axes, which are whole in a file, else the radius.
    /// Without one, an axis stands in for the other. Signs mean nothing.
    double halfEast = 0.0;
    double halfNorth = 0.0;
};

/// Nothing for a shape that has no place or no size. A whole turn leads counter-clockwise.
std::optional<RoundOutline> roundOutline(const CircularShape& shape, const Placement& placement);

}  // namespace halCore::ZEL
