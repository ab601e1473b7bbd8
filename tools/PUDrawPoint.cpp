#include "tools/PUDrawPoint.h"

#include <cmath>

#include "geo/Angles.h"

namespace PluginUtils {

using halCore::Vec3;

namespace {

/// A centimetre on the ground: the same place for a cursor.
constexpr double kSamePlaceRadians = 1.5e-9;

bool samePlace(const Vec3& a, const Vec3& b) {
    return std::abs(a.lat() - b.lat()) < kSamePlaceRadians &&
           std::abs(halCore::wrapToPi(a.lon() - b.lon())) * std::cos(a.lat()) < kSamePlaceRadians;
}

}  // namespace

GrabbingCursor::GrabbingCursor(const Vec3& ground, const Vec3& aimed,
                               const OverlayEditor::ViewProjection& view)
    : ground_(ground), view_(view), pixel_(view.pixel(halCore::toEcef(aimed))) {}

bool GrabbingCursor::grabs(const Vec3& lla, const halCore::Ecef& ecef) const {
    if (!view_.isValid()) return samePlace(lla, ground_);
    const auto pixel = pixel_ ? view_.pixel(ecef) : std::nullopt;
    return pixel && distance(*pixel, *pixel_) <= kGrabRadius * view_.pixelScale() &&
           !view_.isHiddenByEarth(ecef);
}

bool GrabbingCursor::standsUnder(const Vec3& lla) const {
    return grabs(lla, halCore::toEcef(Vec3(lla.lat(), lla.lon(), 0.0)));
}

}  // namespace PluginUtils
