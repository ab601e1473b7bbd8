#include "geo/Ecef.h"

#include <GeographicLib/Geocentric.hpp>

#include "geo/Angles.h"

namespace halCore {

Ecef toEcef(const Vec3& lla) {
    const double sinLat = std::sin(lla.lat());
    const double cosLat = std::cos(lla.lat());
    const double primeVertical = wgs84::a / std::sqrt(1.0 - wgs84::e2 * sinLat * sinLat);
    const double ring = (primeVertical + lla.alt()) * cosLat;
    return {ring * std::cos(lla.lon()), ring * std::sin(lla.lon()),
            (primeVertical * (1.0 - wgs84::e2) + lla.alt()) * sinLat};
}

Vec3 toGeodetic(const Ecef& position) {
    double lat = 0.0;
    double lon = 0.0;
    double alt = 0.0;
    GeographicLib::Geocentric::WGS84().Reverse(position.x, position.y, position.z, lat, lon, alt);
    return {lat * kRadiansPerDegree, lon * kRadiansPerDegree, alt};
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

BodyFrame bodyFrame(const Vec3& origin, double heading, double pitch, double roll) {
    const LocalFrame level = localFrame(origin.lat(), origin.lon());
    const Ecef ahead = level.north * std::cos(heading) + level.east * std::sin(heading);
    const Ecef aside = level.east * std::cos(heading) - level.north * std::sin(heading);
    const Ecef forward = ahead * std::cos(pitch) + level.up * std::sin(pitch);
    const Ecef above = level.up * std::cos(pitch) - ahead * std::sin(pitch);
    return {aside * std::cos(roll) - above * std::sin(roll), forward,
            above * std::cos(roll) + aside * std::sin(roll)};
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

}  // namespace halCore
