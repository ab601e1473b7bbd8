#include "geo/NearGeodesic.h"

#include <cmath>

#include "geo/Wgs84.h"

namespace halCore {

namespace {

/// Below a place, on the unit sphere.
Ecef onSphere(const Vec3& point, const Ecef& place) {
    return toUnitSphere(point.alt() == 0.0 ? place : toEcef({point.lat(), point.lon(), 0.0}));
}

}  // namespace

NearGeodesic::NearGeodesic(const Vec3& from, const Ecef& fromPlace, const Vec3& to, const Ecef& toPlace)
    : altitude_(from.alt()), from_(onSphere(from, fromPlace)) {
    const Ecef end = onSphere(to, toPlace);
    aside_ = cross(from_, end);
    const double sine = length(aside_);
    aside_ = normalized(aside_);
    ahead_ = cross(aside_, from_);
    const double cosine = dot(from_, end);
    angle_ = std::atan2(sine, cosine);
    bend_ = -0.5 * wgs84::e2 * aside_.z;
    back_ = sine > 0.0 ? angle_ * (from_.z - ahead_.z * cosine / sine) : 0.0;
}

double NearGeodesic::meters() const {
    // What e² dz² takes from it.
    const SinCos whole(angle_);
    const double z = from_.z * from_.z;
    const double dz = ahead_.z * ahead_.z;
    const double slope = 0.5 * (angle_ * (z + dz) + whole.sin * whole.cos * (dz - z)) -
                         from_.z * ahead_.z * whole.sin * whole.sin;
    return wgs84::a * (angle_ - 0.5 * wgs84::e2 * slope);
}

void NearGeodesic::start(double share, double step) {
    at_ = angle_ * share;
    step_ = angle_ * step;
    way_ = SinCos(at_);
    more_ = SinCos(step_);
}

void NearGeodesic::next() {
    at_ += step_;
    way_ = way_.plus(more_);
}

Ecef NearGeodesic::here() const {
    const double offset = bend_ * (at_ * (from_.z * way_.sin - ahead_.z * way_.cos) - back_ * way_.sin);
    return (from_ * way_.cos + ahead_ * way_.sin + aside_ * offset) * (1.0 - 0.5 * offset * offset);
}

Vec3 NearGeodesic::point() const {
    const Ecef u = here();
    return {std::atan2(u.z * wgs84::a, std::sqrt(u.x * u.x + u.y * u.y) * wgs84::b), std::atan2(u.y, u.x),
            altitude_};
}

Ecef NearGeodesic::place() const {
    const Ecef u = here();
    const Ecef ground{u.x * wgs84::a, u.y * wgs84::a, u.z * wgs84::b};
    if (altitude_ == 0.0) return ground;
    return ground + normalized(Ecef{u.x / wgs84::a, u.y / wgs84::a, u.z / wgs84::b}) * altitude_;
}

}  // namespace halCore
