#pragma once

#include <vector>

#include "common/Vec3.h"
#include "geo/Ecef.h"

namespace sandbox {

/// Geodetic points: latitude, longitude (radians), altitude (metres).
using GeodeticPath = std::vector<halCore::Vec3>;

/// The same with the earth-centred place of each point, which takes time to work out.
struct PlacedPath {
    GeodeticPath points;
    std::vector<halCore::Ecef> places;

    void add(const halCore::Vec3& point, const halCore::Ecef& place) {
        points.push_back(point);
        places.push_back(place);
    }
};

enum class PathKind { Geodesic, Rhumb };

struct DistanceAndAzimuth {
    double meters = 0.0;
    double azimuthAtStart = 0.0;  ///< radians clockwise from north
    double azimuthAtEnd = 0.0;    ///< direction of travel at the end
};

// All by GeographicLib, exact to nanometres at any distance, at the poles and across 180°.

DistanceAndAzimuth geodesicBetween(const halCore::Vec3& from, const halCore::Vec3& to);
/// The place at a distance along an azimuth; keeps the altitude.
halCore::Vec3 geodesicFrom(const halCore::Vec3& from, double azimuth, double meters);

/// Appends the way from the last point of `path` to `to`, in pieces of at most `step` metres; the
/// altitude changes evenly.
void appendPath(GeodeticPath& path, const halCore::Vec3& to, PathKind kind, double step);
void appendPath(PlacedPath& path, const halCore::Vec3& to, const halCore::Ecef& place, PathKind kind,
                double step);

/// Points at distance `meters` around a centre, from one azimuth over a sweep (negative =
/// counter-clockwise) to the other, both ends included. So many points that the straight pieces stay
/// within `tolerance` metres of the circle, or within a centimetre or 2e-6 of the radius, whichever is
/// largest.
GeodeticPath geodesicArc(const halCore::Vec3& center, double meters, double azimuth, double sweep,
                         double tolerance);
/// The same about an ellipse: half axes to the east and to the north, then turned clockwise by `turn`.
/// Azimuths are those of the points seen from the centre.
GeodeticPath ellipticalArc(const halCore::Vec3& center, double halfEast, double halfNorth, double turn,
                           double azimuth, double sweep, double tolerance);
/// In how many straight pieces these functions cut an arc, at least 2. A whole turn is cut into twelve equal
/// parts or more, so that what stands on every twelfth stands still however fine the pieces are.
int piecesOfArc(double radius, double sweep, double tolerance);

/// Leaves out points until what remains is still within `tolerance` metres of every point left out
/// (the Douglas-Peucker method on straight lines in space). The first and the last point stay.
void simplify(PlacedPath& path, double tolerance);

std::vector<halCore::Ecef> toEcef(const GeodeticPath& path);

}  // namespace sandbox
