#pragma once

#include <cmath>
#include <limits>
#include <optional>

#include "common/Vec3.h"

namespace OverlayEditor {

/// Stands in a list of places where a position has none: its offset leads beyond a pole, or nowhere because
/// what it counts from stands on one.
inline constexpr halCore::Vec3 kNoPlace(std::numeric_limits<double>::quiet_NaN(), 0.0, 0.0);
inline bool isPlace(const halCore::Vec3& lla) {
    return std::isfinite(lla.lat()) && std::isfinite(lla.lon()) && std::isfinite(lla.alt());
}

/// A position between a shape and its panel.
struct PlacedPoint {
    explicit PlacedPoint(const halCore::Vec3& lla) : place(lla) {}
    PlacedPoint(const halCore::Vec3& xyz, const halCore::Vec3& lla) : offset(xyz), place(lla) {}

    /// From the shape's reference; it is what counts. Nothing where places count.
    std::optional<halCore::Vec3> offset;
    /// Radians, metres; kNoPlace when the offset leads nowhere.
    halCore::Vec3 place;
};

}  // namespace OverlayEditor
