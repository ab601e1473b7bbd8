#include "globe/Ecef.h"

#include <numbers>

#include <GeographicLib/Geocentric.hpp>

namespace sandbox {

namespace {
constexpr double kDegree = std::numbers::pi / 180.0;
}

// The two conversions are written with radians on our side: a detour over degrees would cost nanometres
// only, but GeographicLib's reverse is exact at any altitude and at the poles, so it is used as it is.
Ecef toEcef(const halCore::Vec3& geodetic) {
    const double e2 = 1.0 - (kPoleRadius * kPoleRadius) / (kEquatorRadius * kEquatorRadius);
    const double sinLat = std::sin(geodetic.lat());
    const double cosLat = std::cos(geodetic.lat());
    const double n = kEquatorRadius / std::sqrt(1.0 - e2 * sinLat * sinLat);
    const double ring = (n + geodetic.alt()) * cosLat;
    return {ring * std::cos(geodetic.lon()), ring * std::sin(geodetic.lon()),
            (n * (1.0 - e2) + geodetic.alt()) * sinLat};
}

halCore::Vec3 toGeodetic(const Ecef& position) {
    double lat = 0.0;
    double lon = 0.0;
    double alt = 0.0;
    GeographicLib::Geocentric::WGS84().Reverse(position.x, position.y, position.z, lat, lon, alt);
    return {lat * kDegree, lon * kDegree, alt};
}

LocalFrame localFrame(double latitude, double longitude) {
    const double sinLat = std::sin(latitude);
    const double cosLat = std::cos(latitude);
    const double sinLon = std::sin(longitude);
    const double cosLon = std::cos(longitude);
    return {{-sinLon, cosLon, 0.0},
            {-sinLat * cosLon, -sinLat * sinLon, cosLat},
            {cosLat * cosLon, cosLat * sinLon, sinLat}};
}

bool isHiddenByEarth(const Ecef& eye, const Ecef& point) {
    const Ecef e = toUnitSphere(eye);
    const Ecef v = toUnitSphere(point - eye);
    const double c = dot(e, e) - 1.0;
    const double b = dot(e, v);
    const double a = dot(v, v);
    // The ray meets the sphere, and the point lies past the middle of the stretch inside.
    return c > 0.0 && b < 0.0 && b * b - a * c > 0.0 && a + b > 1e-13;
}

}  // namespace sandbox
