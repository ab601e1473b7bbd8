#include "geo/CoordinateConverter.h"

#include <algorithm>
#include <cmath>

#include "geo/Angles.h"
#include "geo/Wgs84.h"

namespace halCore {
namespace {

/// What rounding alone carries beyond a pole, in radians, is still the pole: six nanometres.
constexpr double kPoleGrain = 1e-15;
/// So near to half way round, in radians, east and west cannot be told apart; both are half way to the east.
constexpr double kOppositeGrain = 1e-14;

bool isBeyondPole(double latitude) {
    return !(std::abs(latitude) <= kHalfPi + kPoleGrain);
}

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
    double turn = wrapToPi(lla.lon() - origin_.lon());
    if (turn <= kOppositeGrain - kPi) turn = kPi;
    return Vec3(turn * metersPerLongitude_, (lla.lat() - origin_.lat()) * metersPerLatitude_,
                lla.alt() - origin_.alt());
}

Vec3 CoordinateConverter::toLla_(const Vec3& enu) const {
    const double lat = origin_.lat() + enu.y() / metersPerLatitude_;
    const double lon = origin_.lon() + enu.x() / metersPerLongitude_;
    const bool isPole = std::abs(lat) > kHalfPi && !isBeyondPole(lat);
    return Vec3(isPole ? std::copysign(kHalfPi, lat) : lat, wrapToPi(lon), enu.z() + origin_.alt());
}

bool CoordinateConverter::isWithinHalfTurn_(double east) const {
    const double turn = east / metersPerLongitude_;
    return turn > kOppositeGrain - kPi && turn <= kPi + kPoleGrain;
}

int CoordinateConverter::convert(const Coordinate& in, Coordinate& out, CoordinateSystem target) const {
    const Vec3& given = in.position();
    if (in.coordinateSystem() == target) {
        out = in;
        return isFinite(given) ? 0 : 3;
    }
    const bool toFlat = target == CoordinateSystem::FlatEnu;
    const Vec3 result = toFlat ? toFlat_(given) : toLla_(given);
    const bool beyondPole = isBeyondPole(toFlat ? given.lat() : result.lat());
    const bool comesBack = toFlat || isWithinHalfTurn_(given.x());
    const bool isNumber = isFinite(given) && isFinite(result);
    out = Coordinate(target, result, in.elapsedEciTime());
    if (!holds_) return 1;
    if (!isNumber) return 3;
    if (beyondPole) return 2;
    return comesBack ? 0 : 4;
}

}  // namespace halCore
