#include "model/RectangleGeometry.h"

#include <cmath>

#include "geo/Angles.h"
#include "geo/Sodano.h"

namespace OverlayEditor::RectangleGeometry {

halCore::Vec3 calcCornerPoint(const halCore::Vec3& anchor, double width, double height) {
    double azimuth = 0.0;
    if (height == 0.0)
        azimuth = std::atan(width);
    else
        azimuth = std::atan(width / height) + (height < 0.0 ? halCore::kPi : 0.0);
    return halCore::Sodano::direct(anchor, azimuth, std::hypot(width, height));
}

Size calcWidthHeight(const halCore::Vec3& first, const halCore::Vec3& last) {
    const auto way = halCore::Sodano::inverse(first, last);
    return {way.distance * std::sin(way.azimuth1), way.distance * std::cos(way.azimuth1)};
}

Corners cornersAbout(const halCore::Vec3& center, const Size& size) {
    const double halfWidth = 0.5 * size.width;
    const double halfHeight = 0.5 * size.height;
    return {calcCornerPoint(center, -halfWidth, halfHeight == 0.0 ? -1.0 : -halfHeight),
            calcCornerPoint(center, halfWidth, halfHeight)};
}

Span spanBetween(const Corners& corners) {
    const auto way = halCore::Sodano::inverse(corners.first, corners.last);
    const auto middle =
        halCore::Sodano::direct(corners.first.lat(), corners.first.lon(), way.azimuth1, 0.5 * way.distance);
    return {{middle.lat, middle.lon, corners.first.alt()},
            {way.distance * std::sin(middle.azimuth2), way.distance * std::cos(middle.azimuth2)}};
}

}  // namespace OverlayEditor::RectangleGeometry
