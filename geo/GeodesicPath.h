#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "common/Vec3.h"
#include "geo/Ecef.h"

namespace halCore {

/// Geodetic points: latitude, longitude (radians), altitude (metres).
using GeodeticPath = std::vector<Vec3>;

/// The same with the earth-centred place of each point, which takes time to work out; one of both may be
/// missing.
struct PlacedPath {
    GeodeticPath points{};
    std::vector<Ecef> places{};
    bool placesOnly = false;  ///< add() leaves the points out

    void add(const Vec3& point, const Ecef& place) {
        if (!placesOnly) points.push_back(point);
        places.push_back(place);
    }
    std::size_t size() const { return std::max(points.size(), places.size()); }
};

enum class PathKind { Geodesic, Rhumb };

struct DistanceAndAzimuth {
    double meters = 0.0;
    double azimuthAtStart = 0.0;  ///< radians clockwise from north
    double azimuthAtEnd = 0.0;    ///< direction of travel at the end
};

// By GeographicLib, exact to nanometres at any distance, at the poles and across 180°; arcs within 50 km of
// their centre by PlacesAround.

DistanceAndAzimuth geodesicBetween(const Vec3& from, const Vec3& to);
/// The place at a distance along an azimuth; keeps the altitude.
Vec3 geodesicFrom(const Vec3& from, double azimuth, double meters);

/// Appends the way from the last point of `path` to `to`, in pieces of at most `step` metres; the
/// altitude changes evenly.
void appendPath(GeodeticPath& path, const Vec3& to, PathKind kind, double step);
/// Does so, or goes on with it, from `start`, which is that point of a path that has no others but those of
/// this way after it; some hundred points at a time. A geodesic in a few pieces, level, may be off by a
/// hundredth of what straight pieces are off. \return whether `to` has been reached
bool appendSome(PlacedPath& path, std::size_t from, const Vec3& start, const Vec3& to, const Ecef& place,
                PathKind kind, double step);

/// A part of an ellipse about a centre, at its altitude: half axes to the east and to the north (metres
/// along geodesics; equal ones make a circle), then turned clockwise by `turn`, from one azimuth over a sweep
/// (negative = counter-clockwise) to the other. Azimuths are those of the points seen from the centre.
class EllipticalArc {
  public:
    EllipticalArc(const Vec3& center, double halfEast, double halfNorth, double turn, double azimuth,
                  double sweep);

    double longerHalf() const;
    /// From 0 at the start to 1 at the end, in equal steps of the ellipse's parameter angle.
    Vec3 at(double share) const;
    /// Both ends included. So many points that the straight pieces stay within `tolerance` metres of the
    /// curve, or within a centimetre or 2e-6 of the radius, whichever is largest.
    GeodeticPath path(double tolerance) const;
    /// The same points, earth-centred, in a third of the time.
    std::vector<Ecef> places(double tolerance) const;

  private:
    template <typename Point>
    std::vector<Point> points(double tolerance) const;

    Vec3 center_;
    double halfEast_;
    double halfNorth_;
    double turn_;
    double from_;
    double sweep_;
};

/// A racetrack about two centres: half circles about the second and then about the first one, joined by
/// geodesics from the end of each to the start of the other. Circles about the first one when they are closer
/// than a millimetre.
std::vector<EllipticalArc> racetrackArcs(const Vec3& center, const Vec3& center2, double radius);
/// In how many straight pieces an arc is cut, at least 2. A whole turn is cut into twelve equal
/// parts or more, so that what stands on every twelfth stands still however fine the pieces are.
int piecesOfArc(double radius, double sweep, double tolerance);

/// Leaves out points that follow the one at `first`, until what remains is still within `tolerance` metres of
/// every point left out (the Douglas-Peucker method on straight lines in space). That point and the last one
/// stay. The time may grow with the square of the points: a path of very many is simplified run by run, each
/// from where the one before it ended.
void simplify(PlacedPath& path, double tolerance, std::size_t first = 0);

std::vector<Ecef> toEcef(const GeodeticPath& path);

}  // namespace halCore
