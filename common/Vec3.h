#pragma once

namespace halCore {

/// Three doubles. A geodetic point is latitude, longitude (radians) and altitude (metres above the
/// ellipsoid); a relative point is x east, y north, z up (metres) about a reference point.
class Vec3 {
  public:
    constexpr Vec3() = default;
    constexpr Vec3(double x, double y, double z) : x_(x), y_(y), z_(z) {}

    constexpr double x() const { return x_; }
    constexpr double y() const { return y_; }
    constexpr double z() const { return z_; }
    constexpr double lat() const { return x_; }
    constexpr double lon() const { return y_; }
    constexpr double alt() const { return z_; }

    constexpr void setX(double value) { x_ = value; }
    constexpr void setY(double value) { y_ = value; }
    constexpr void setZ(double value) { z_ = value; }
    constexpr void setLat(double radians) { x_ = radians; }
    constexpr void setLon(double radians) { y_ = radians; }
    constexpr void setAlt(double metres) { z_ = metres; }
    constexpr void set(double x, double y, double z) { *this = Vec3(x, y, z); }

    friend constexpr bool operator==(const Vec3&, const Vec3&) = default;

  private:
    double x_ = 0.0;
    double y_ = 0.0;
    double z_ = 0.0;
};

}  // namespace halCore
