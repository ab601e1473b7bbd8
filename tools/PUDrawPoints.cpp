#include "tools/PUDrawPoints.h"

#include <cmath>

#include "geo/Angles.h"

namespace PluginUtils {

using halCore::Vec3;
using OverlayEditor::Pixel;
using OverlayEditor::ViewProjection;

namespace {

/// A centimetre on the ground: the same place for a cursor.
constexpr double kSamePlaceRadians = 1.5e-9;

bool samePlace(const Vec3& a, const Vec3& b) {
    return std::abs(a.lat() - b.lat()) < kSamePlaceRadians &&
           std::abs(halCore::wrapToPi(a.lon() - b.lon())) * std::cos(a.lat()) < kSamePlaceRadians;
}

std::optional<Pixel> cursorPixel(const Vec3& cursor, const ViewProjection& view) {
    return view.pixel(ViewProjection::toEcef(Vec3(cursor.lat(), cursor.lon(), 0.0)));
}

bool isNear(const Pixel& cursor, const Vec3& lla, const Vec3& ecef, const ViewProjection& view) {
    const auto pixel = view.pixel(ecef);
    return pixel && distance(*pixel, cursor) <= kGrabRadius * view.pixelScale() && view.visiblePixel(lla);
}

}  // namespace

bool canGrab(const PUDrawPoint& point, const Vec3& cursor, const ViewProjection& view) {
    if (!view.isValid()) return samePlace(point.getPosition(), cursor);
    const auto pixel = cursorPixel(cursor, view);
    return pixel && isNear(*pixel, point.getPosition(), ViewProjection::toEcef(point.getPosition()), view);
}

void PUDrawPoints::setPositions(std::span<const Vec3> positions) {
    if (points_.size() > positions.size()) points_.resize(positions.size());
    for (std::size_t i = 0; i < positions.size(); ++i) {
        if (i < points_.size()) {
            if (point(i).getPosition() != positions[i]) point(i).setPosition(positions[i]);
            continue;
        }
        points_.push_back(std::make_unique<Entry>(
            Entry{PUDrawPoint(positions[i], color_), positions[i], ViewProjection::toEcef(positions[i])}));
        if (shown_) points_.back()->point.show();
    }
}

const Vec3& PUDrawPoints::ecef(std::size_t index) const {
    Entry& entry = *points_[index];
    if (entry.ecefOf != entry.point.getPosition()) {
        entry.ecefOf = entry.point.getPosition();
        entry.ecef = ViewProjection::toEcef(entry.ecefOf);
    }
    return entry.ecef;
}

std::optional<std::size_t> PUDrawPoints::grabbedBy(const Vec3& cursor, const ViewProjection& view) const {
    const auto pixel = cursorPixel(cursor, view);
    for (std::size_t i = 0; i < points_.size(); ++i)
        if (view.isValid() ? pixel && isNear(*pixel, point(i).getPosition(), ecef(i), view)
                           : samePlace(point(i).getPosition(), cursor))
            return i;
    return std::nullopt;
}

std::optional<std::size_t> PUDrawPoints::indexOf(const PUDrawPoint* searched) const {
    for (std::size_t i = 0; i < points_.size(); ++i)
        if (&points_[i]->point == searched) return i;
    return std::nullopt;
}

void PUDrawPoints::show() {
    shown_ = true;
    for (const auto& entry : points_) entry->point.show();
}

void PUDrawPoints::hide() {
    shown_ = false;
    for (const auto& entry : points_) entry->point.hide();
}

}  // namespace PluginUtils
