#pragma once

#include <optional>
#include <vector>

#include "format/Placement.h"
#include "format/ZelShapes.h"
#include "geo/GeodesicPath.h"

namespace exchange {

/// What a shape looks like on a map.
struct Outline {
    enum class Form { None, Point, Points, Line, Lines, Area };

    Form form = Form::None;
    /// Latitude and longitude (radians), altitude (metres). An area has one part, whose last point is not its
    /// first.
    std::vector<halCore::GeodeticPath> parts;
    /// How the points came about: they are the shape's own ones, in their order; they were worked out on a
    /// curve, and the area lies to their left; or they run along parallels and meridians, and their
    /// longitudes are not to be wrapped.
    enum class Origin { Given, Curve, Grid } origin = Origin::Given;
};

/// The outline of a shape. Round bodies, cones and cylinders have that of their level cross-section; an arc
/// is a line, or when it is filled the slice of pie.
///
/// Straight pieces leave the true curve by less than `tolerance` metres along the ground, whether they are
/// drawn straight on a map of latitudes and longitudes or as geodesics. 0 stands for defaultTolerance().
/// \param reference for relative shapes that have none of their own
Outline outlineOf(const halCore::ZEL::ZelShape& shape,
                  const std::optional<halCore::ZEL::Reference>& reference, double tolerance);

/// One metre, or 1e-4 of a curve's radius (metres), whichever is smaller.
double defaultTolerance(double radius);

}  // namespace exchange
