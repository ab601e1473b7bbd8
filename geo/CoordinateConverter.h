#pragma once

#include "common/Vec3.h"

namespace halCore {

/// What the three numbers of a position mean.
enum class CoordinateSystem {
    /// Latitude and longitude in radians, altitude in metres above the WGS-84 ellipsoid.
    Lla,
    /// East, north and up in metres about a reference origin, on the flat earth of CoordinateConverter.
    FlatEnu
};

/// A position in a coordinate system.
class Coordinate {
  public:
    constexpr Coordinate() = default;
    constexpr Coordinate(CoordinateSystem system, const Vec3& position, double elapsedEciTime = 0.0)
        : system_(system), position_(position), elapsedEciTime_(elapsedEciTime) {}

    constexpr CoordinateSystem coordinateSystem() const { return system_; }
    constexpr const Vec3& position() const { return position_; }
    constexpr double elapsedEciTime() const { return elapsedEciTime_; }

  private:
    CoordinateSystem system_ = CoordinateSystem::Lla;
    Vec3 position_;
    double elapsedEciTime_ = 0.0;
};

/// Converts between geodetic positions and the flat east-north-up frame about a reference origin.
///
/// The frame is linear: x = (longitude - origin's) N cos(latitude of the origin), y = (latitude -
/// origin's) M, z = altitude - origin's, with N and M the radii of curvature of the ellipsoid in the
/// prime vertical and in the meridian at the origin, both plus the origin's altitude. Lines of equal
/// latitude or longitude stay straight, an axis-aligned box stays one exactly, and a point without z lies
/// at the origin's altitude however far out.
class CoordinateConverter {
  public:
    /// The reference origin is (0, 0, 0).
    CoordinateConverter();

    void setReferenceOrigin(double lat, double lon, double alt);
    void setReferenceOrigin(const Vec3& lla);
    const Vec3& referenceOrigin() const { return origin_; }

    /// Converts `in` to the target system; a longitude comes out in (-pi, pi]. Returns 0 when the way back
    /// gives the same position (its longitude modulo a full turn), or
    /// - 1 when the frame does not hold: the origin is within a millimetre of a pole or the earth's centre;
    /// - 2 when the latitude of the position lies beyond a pole;
    /// - 3 when a number is not finite;
    /// - 4 when an offset leads round more than half of the origin's parallel.
    /// The output is written even then, and is no position.
    int convert(const Coordinate& in, Coordinate& out, CoordinateSystem target) const;

  private:
    Vec3 toFlat_(const Vec3& lla) const;
    Vec3 toLla_(const Vec3& enu) const;
    bool isWithinHalfTurn_(double east) const;

    Vec3 origin_;
    double metersPerLatitude_ = 1.0;
    double metersPerLongitude_ = 1.0;
    bool holds_ = true;
};

}  // namespace halCore
