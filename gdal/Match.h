#pragma once

#include <optional>
#include <vector>

#include <ogr_geometry.h>

#include "gdal/Outline.h"

namespace exchange {

/// The vertices of a geometry, a path for each point, line and ring; a ring's last point is not its first.
/// Radians and metres. Nothing when a number is not finite or a latitude lies beyond a pole.
std::optional<std::vector<halCore::GeodeticPath>> pathsOf(const OGRGeometry& geometry);

/// Whether a geometry's vertices are those of an outline, or lie on it, and the other way round; whatever
/// their order, and however the outline is cut at 180 degrees. `allowed`: metres; altitudes to a centimetre,
/// unless the geometry has none.
bool matches(const Outline& outline, const std::vector<halCore::GeodeticPath>& paths, bool hasAltitudes,
             double allowed);

/// How far the outline of a shape was moved as a whole: the difference of latitudes, longitudes and
/// altitudes. Nothing when the paths are not the outline moved so, or cross 180 degrees or a pole.
std::optional<halCore::Vec3> shiftOf(const Outline& outline, const std::vector<halCore::GeodeticPath>& paths,
                                     bool hasAltitudes, double allowed);

/// The difference of the middles of what the two fill; nothing where that means nothing.
std::optional<halCore::Vec3> middleShift(const Outline& outline,
                                         const std::vector<halCore::GeodeticPath>& paths, bool hasAltitudes);

/// Metres that a geometry may differ from the outline and still be the same: two centimetres, or
/// defaultTolerance() of half its size, whichever is larger.
double allowedFor(const Outline& outline);

}  // namespace exchange
