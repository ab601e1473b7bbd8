#include "geo/PlacesAround.h"

#include <cmath>

#include "geo/Angles.h"

namespace halCore {
namespace {

/// Of the half axes.
constexpr double kSquaredRatio = 1.0 - wgs84::e2;

/// H of the ellipsoid, in units of the equatorial radius squared.
Ecef bent(const Ecef& v) {
    constexpr double across = 1.0 / (wgs84::a * wgs84::a);
    return {v.x * across, v.y * across, v.z * (across / kSquaredRatio)};
}

}  // namespace

PlacesAround::PlacesAround(const Vec3& center)
    : center_(center),
      sinLon_(std::sin(center.lon())),
      cosLon_(std::cos(center.lon())),
      sinLat_(std::sin(center.lat())),
      cosLat_(std::cos(center.lat())) {
    const double radius = wgs84::a / std::sqrt(1.0 - (1.0 - kSquaredRatio) * sinLat_ * sinLat_);
    start_ = {radius * cosLat_, 0.0, radius * kSquaredRatio * sinLat_};
    normal_ = bent(start_);
    bentNormal_ = bent(normal_);
    normalSquared_ = dot(normal_, normal_);
    normalBent_ = dot(normal_, bentNormal_);
}

/// In the coordinates of start_.
Ecef PlacesAround::onEllipsoid(double east, double north, double meters) const {
    const Ecef v{-sinLat_ * north, east, cosLat_ * north};
    const Ecef bentV = bent(v);
    // x'' = -pull n, and the pull's own first two derivatives.
    const double pull = dot(v, bentV) / normalSquared_;
    const double tilt = dot(v, bentNormal_);
    const double pull1 = -4.0 * pull * tilt / normalSquared_;
    const double tilt1 = dot(bentV, bentV) - pull * normalBent_;
    const double pull2 =
        -4.0 * (pull1 * tilt + pull * tilt1 - 2.0 * pull * tilt * tilt / normalSquared_) / normalSquared_;

    // The circle: v sin(angle) / curvature - pull n (1 - cos(angle)) / curvature^2. The angle is below 0.008.
    const double curvatureSquared = pull * pull * normalSquared_;
    const double s2 = meters * meters;
    const double angle2 = curvatureSquared * s2;
    const double along = meters * (1.0 - angle2 / 6.0 * (1.0 - angle2 / 20.0));
    const double down = pull * s2 / 2.0 * (1.0 - angle2 / 12.0 * (1.0 - angle2 / 30.0));
    // What the third and fourth derivatives have beyond the circle's -curvature^2 v and curvature^2 pull n.
    const double third = s2 * meters / 6.0;
    const double fourth = s2 * s2 / 24.0;
    const double ofV = along + curvatureSquared * third;
    const double ofNormal = -down - pull1 * third - (pull2 + curvatureSquared * pull) * fourth;
    const double ofBentV = -pull * third - 2.0 * pull1 * fourth;
    return start_ + v * ofV + normal_ * ofNormal + bentV * ofBentV + bentNormal_ * (pull * pull * fourth);
}

Vec3 PlacesAround::at(double east, double north, double meters) const {
    const Ecef place = onEllipsoid(east, north, meters);
    // On the ellipsoid the latitude follows from the place without a search.
    return {std::atan2(place.z, kSquaredRatio * std::sqrt(place.x * place.x + place.y * place.y)),
            wrapToPi(center_.lon() + std::atan2(place.y, place.x)), center_.alt()};
}

Ecef PlacesAround::placeAt(double east, double north, double meters) const {
    Ecef place = onEllipsoid(east, north, meters);
    if (center_.alt() != 0.0)
        place = place + normalized({place.x, place.y, place.z / kSquaredRatio}) * center_.alt();
    return {place.x * cosLon_ - place.y * sinLon_, place.x * sinLon_ + place.y * cosLon_, place.z};
}

}  // namespace halCore
