#include "geo/OffsetGrid.h"

#include <cmath>

#include "geo/Angles.h"
#include "geo/Wgs84.h"

namespace OverlayEditor {

using halCore::Vec3;

namespace {

constexpr double kSteps = 1e7;

double nearest(double meters) {
    return std::nearbyint(meters * kSteps) / kSteps;
}

double inward(double meters) {
    return std::trunc(meters * kSteps) / kSteps;
}

bool isSamePlace(const Vec3& a, const Vec3& b) {
    constexpr double halfMicrometer = 5e-7;
    constexpr double rounding = 1e-15;
    const double north = (a.lat() - b.lat()) * halCore::wgs84::a;
    const double east = halCore::wrapToPi(a.lon() - b.lon()) * std::cos(a.lat()) * halCore::wgs84::a;
    return std::hypot(north, east) < halfMicrometer &&
           std::abs(a.alt() - b.alt()) < halfMicrometer + rounding * std::abs(a.alt());
}

}  // namespace

std::optional<Vec3> placeOf(const PointConverter& frame, const Vec3& offset) {
    Vec3 lla;
    if (frame.convertXyzToLla(offset, lla) != 0) return std::nullopt;
    return lla;
}

std::optional<Vec3> offsetOf(const PointConverter& frame, const Vec3& lla) {
    Vec3 exact;
    if (frame.convertLlaToXyz(lla, exact) != 0) return std::nullopt;
    // Rounded outward, the offset of a pole would lead beyond it.
    for (const Vec3& offset : {Vec3(nearest(exact.x()), nearest(exact.y()), nearest(exact.z())),
                               Vec3(inward(exact.x()), inward(exact.y()), nearest(exact.z())), exact}) {
        const auto back = placeOf(frame, offset);
        if (back && isSamePlace(*back, lla)) return offset;
    }
    return std::nullopt;
}

}  // namespace OverlayEditor
