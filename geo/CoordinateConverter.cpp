#include "geo/CoordinateConverter.h"

#include <algorithm>
#include <cmath>

#include "geo/Angles.h"
#include "geo/Wgs84.h"

namespace halCore {
namespace {

/// A latitude that rounding alone carried beyond a pole is still the pole: a tenth of a micrometre, to which
/// offsets are kept in texts.
constexpr double kLatitudeGrain = 2e-14;

bool isFinite(const Vec3& v) {
    return std::isfinite(v.x()) && std::isfinite(v.y()) && std::isfinite(v.z());
}

}  // namespace

CoordinateConverter::CoordinateConverter() {
    setReferenceOrigin(Vec3());
}

void CoordinateConverter::setReferenceOrigin(double lat, double lon, double alt) {
    setReferenceOrigin(Vec3(lat, lon, alt));
}

void CoordinateConverter::setReferenceOrigin(const Vec3& lla) {
    origin_ = lla;
    const double sinLat = std::sin(lla.lat());
    const double w2 = 1.0 - wgs84::e2 * sinLat * sinLat;
    const double primeVertical = wgs84::a / std::sqrt(w2);
    const double meridian = primeVertical * (1.0 - wgs84::e2) / w2;
    metersPerLatitude_ = meridian + lla.alt();
    metersPerLongitude_ = (primeVertical + lla.alt()) * std::cos(lla.lat());

    constexpr double millimeter = 0.001;
    const double metersToPole = (kHalfPi - std::abs(lla.lat())) * metersPerLatitude_;
    holds_ = isFinite(lla) && metersPerLatitude_ > millimeter && metersToPole > millimeter &&
             metersPerLongitude_ > 0.0;
}

Vec3 CoordinateConverter::toFlat_(const Vec3& lla) const {
    return Vec3(wrapToPi(lla.lon() - origin_.lon()) * metersPerLongitude_,
                (lla.lat() - origin_.lat()) * metersPerLatitude_, lla.alt() - origin_.alt());
}

Vec3 CoordinateConverter::toLla_(const Vec3& enu) const {
    const double lat = origin_.lat() + enu.y() / metersPerLatitude_;
    const double lon = origin_.lon() + enu.x() / metersPerLongitude_;
    const bool isPole = std::abs(lat) > kHalfPi && std::abs(lat) <= kHalfPi + kLatitudeGrain;
    return Vec3(isPole ? std::copysign(kHalfPi, lat) : lat, wrapToPi(lon), enu.z() + origin_.alt());
}

int CoordinateConverter::convert(const Coordinate& in, Coordinate& out, CoordinateSystem target) const {
    Vec3 position = in.position();
    const bool same = in.coordinateSystem() == target;
    double lat = position.lat();
    if (!same && target == CoordinateSystem::FlatEnu) {
        position = toFlat_(position);
    } else if (!same) {
        position = toLla_(position);
        lat = position.lat();
    }
    const bool isFiniteResult = isFinite(in.position()) && isFinite(position);
    out = Coordinate(target, position, in.elapsedEciTime());
    if (!holds_ && !same) return 1;
    if (!isFiniteResult) return 3;
    return !same && std::abs(lat) > kHalfPi + kLatitudeGrain ? 2 : 0;
}

}  // namespace halCore
