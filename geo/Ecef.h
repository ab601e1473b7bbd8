#pragma once

#include <cmath>

#include "common/Vec3.h"
#include "geo/Wgs84.h"

namespace halCore {

/// Earth-centred, earth-fixed metres: x towards 0°/0°, z towards the north pole. Also directions there.
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
/// Zero stays zero.
inline Ecef normalized(const Ecef& a) {
    const double size = length(a);
    return size > 0.0 ? a * (1.0 / size) : a;
}

/// Between geodetic (radians, metres above the ellipsoid) and earth-centred metres, exact to nanometres at
/// any altitude and at the poles. The longitude that comes back lies in [-pi, pi].
Ecef toEcef(const Vec3& lla);
Vec3 toGeodetic(const Ecef& position);

/// The local level frame at a geodetic position: unit vectors, right-handed.
struct LocalFrame {
    Ecef east;
    Ecef north;
    Ecef up;
};
LocalFrame localFrame(double latitude, double longitude);

/// Axes of a body: right, forward and up, turned out of east, north and up.
struct BodyFrame {
    Ecef right;
    Ecef forward;
    Ecef up;
};
/// Heading clockwise from north, pitch nose up, roll right side down (radians).
BodyFrame bodyFrame(const Vec3& origin, double heading, double pitch, double roll);

/// Scales earth-centred metres so that the ellipsoid becomes the unit sphere. Straight lines stay straight,
/// so questions of sight are answered on the sphere.
constexpr Ecef toUnitSphere(const Ecef& p) {
    return {p.x / wgs84::a, p.y / wgs84::a, p.z / wgs84::b};
}

/// Whether the ellipsoid hides `point` from `eye`. A point of the surface counts as seen up to the horizon,
/// also when rounding puts it a hair inside; so does a point below the surface up to where the ray of sight
/// is deepest.
bool isHiddenByEarth(const Ecef& eye, const Ecef& point);

}  // namespace halCore
