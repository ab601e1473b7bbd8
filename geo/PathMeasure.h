#pragma once

#include <cstddef>
#include <memory>

#include "common/Vec3.h"

namespace halCore {

/// How long a way over the ellipsoid is, and how large the area is that it encloses when its end is joined to
/// its start: shortest ways from point to point, by GeographicLib. Altitudes do not count.
class PathMeasure {
  public:
    PathMeasure();
    ~PathMeasure();
    PathMeasure(const PathMeasure&) = delete;
    PathMeasure& operator=(const PathMeasure&) = delete;

    void clear();
    void add(const Vec3& point);
    std::size_t size() const { return size_; }

    /// The same with one more point at the end, which is not kept, in time that does not grow with the way.
    /// Metres, from the first point to that one.
    double lengthTo(const Vec3& next) const;
    /// Square metres, of the smaller side; 0 for less than three points in all.
    double areaTo(const Vec3& next) const;

  private:
    struct Sums;
    std::unique_ptr<Sums> sums_;
    std::size_t size_ = 0;
};

/// Square metres within a geodesic distance (metres, below half the way round the earth) of a place, to 1e-6
/// of it.
double areaOfDisc(const Vec3& center, double radius);

/// Square metres of a part of an ellipse about a centre, from one azimuth over a sweep (radians clockwise, up
/// to a whole turn) to the other and straight back to the centre, to 1e-6 of it. Half axes in metres to the
/// east and to the north.
double areaOfSector(const Vec3& center, double halfEast, double halfNorth, double azimuth, double sweep);

}  // namespace halCore
