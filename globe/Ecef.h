#pragma once

#include <cmath>

#include "common/Vec3.h"

namespace sandbox {

/// Earth-centred, earth-fixed metres: x towards 0°/0°, z towards the north pole.
struct Ecef {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    friend constexpr bool operator==(const Ecef&, const Ecef&) = default;
};

constexpr Ecef operator+(const Ecef& a, const Ecef& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr Ecef operator-(const Ecef& a, const Ecef& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr Ecef operator-(const Ecef& a) {
    return {-a.x, -a.y, -a.z};
}
constexpr Ecef operator*(const Ecef& a, double s) {
    return {a.x * s, a.y * s, a.z * s};
}
constexpr double dot(const Ecef& a, const Ecef& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
constexpr Ecef cross(const Ecef& a, const Ecef& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(const Ecef& a) {
    return std::sqrt(dot(a, a));
}
inline Ecef normalized(const Ecef& a) {
    const double size = length(a);
    return size > 0.0 ? a * (1.0 / size) : a;
}

/// WGS-84 semi-axes in metres.
inline constexpr double kEquatorRadius = 6378137.0;
inline constexpr double kPoleRadius = kEquatorRadius * (1.0 - 1.0 / 298.257223563);

/// Between geodetic (radians, metres above the ellipsoid) and earth-centred metres. The longitude that
/// comes back lies in [-pi, pi].
Ecef toEcef(const halCore::Vec3& geodetic);
halCore::Vec3 toGeodetic(const Ecef& position);

/// The local level frame at a geodetic position: unit vectors, right-handed.
struct LocalFrame {
    Ecef east;
    Ecef north;
    Ecef up;
};
LocalFrame localFrame(double latitude, double longitude);

/// Scales earth-centred metres so that the ellipsoid becomes the unit sphere. Straight lines stay
/// straight, so questions of sight are answered on the sphere.
constexpr Ecef toUnitSphere(const Ecef& p) {
    return {p.x / kEquatorRadius, p.y / kEquatorRadius, p.z / kPoleRadius};
}

/// Whether the ellipsoid hides `point` from `eye`. A point of the surface counts as seen up to the
/// horizon, also when rounding puts it a hair inside; so does a point below the surface up to where the
/// ray of sight is deepest. Agrees with the test that the overlay shaders make for every pixel.
bool isHiddenByEarth(const Ecef& eye, const Ecef& point);

}  // namespace sandbox
