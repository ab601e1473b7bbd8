#pragma once

#include <cstddef>
#include <optional>

#include "common/Work.h"
#include "globe/DetailBudget.h"
#include "globe/DrawList.h"
#include "globe/OverlayScene.h"

namespace sandbox {

/// Works out what to draw for one shape and appends it to `out`. Curves follow geodesics (by
/// GeographicLib), parallels or rhumb lines on the ellipsoid, in straight pieces.
///
/// `tolerance`: metres that the pieces may be off the true curve; coarse geometry for a view from far
/// away. 0 asks for the finest: circles to a centimetre or 2e-6 of the radius, paths in pieces of 2 km
/// (which dip 8 cm below the surface), longer ones only for lines beyond 40,000 km.
///
/// Angles of arcs are azimuths (clockwise from north). An elliptical shape has its major axis east-west
/// and its minor axis north-south, turned clockwise by the shape's heading. Relative shapes stand in the
/// flat east-north-up frame about the shape's own reference point, else about `reference`; with neither
/// they are not drawn. Pitch and roll lean a shape about its centre, unless it is clamped or extruded to the
/// ground; they do not lean an orbit or a box. Shapes that are not drawn ("off") or lack what they need add
/// nothing.
///
/// The work can be laid aside wherever its cost grows with the shape's points. The shape is to stay as it is
/// until it is done.
Work workOutGeometry(const halCore::ZEL::ZelShape& shape, const std::optional<OverlayReference>& reference,
                     double tolerance, const DetailShares& shares, DrawList& out);
inline void appendGeometry(const halCore::ZEL::ZelShape& shape,
                           const std::optional<OverlayReference>& reference, double tolerance, DrawList& out,
                           const DetailShares& shares = {}) {
    workOutGeometry(shape, reference, tolerance, shares, out).finish();
}

/// A ball that holds all that appendGeometry() would ever add for a shape.
struct RoughPlace {
    halCore::Ecef center;
    double radius = 0.0;
};
/// Where that can be told at once: for a circle that is neither extruded nor leaning. It has no label either.
std::optional<RoughPlace> roughPlace(const halCore::ZEL::ZelShape& shape,
                                     const std::optional<OverlayReference>& reference);
/// The same for dots, lines and areas, neither extruded nor larger than a continent nor of very many points,
/// after a look at each point.
std::optional<RoughPlace> placeByPoints(const halCore::ZEL::ZelShape& shape,
                                        const std::optional<OverlayReference>& reference);

/// About how many points a shape has in its finest geometry; to share out work.
std::size_t roughSize(const halCore::ZEL::ZelShape& shape);

}  // namespace sandbox
