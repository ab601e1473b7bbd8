#include "format/RoundOutline.h"

#include <algorithm>
#include <cmath>

#include "format/Placement.h"
#include "format/ShapeCast.h"
#include "geo/Angles.h"

namespace halCore::ZEL {
namespace {

/// The halves of the axes that a shape has.
void setHalves(const auto& shape, RoundOutline& out) {
    double major = 0.0;
    double minor = 0.0;
    const bool hasMajor = shape.getMajorAxis(major) == 0;
    const bool hasMinor = shape.getMinorAxis(minor) == 0;
    const double radius = out.halfEast;
    const double other = radius > 0.0 ? radius : std::abs(hasMajor ? major : minor) / 2;
    out.halfEast = hasMajor ? std::abs(major) / 2 : other;
    out.halfNorth = hasMinor ? std::abs(minor) / 2 : other;
}

}  // namespace

std::optional<RoundOutline> roundOutline(const CircularShape& shape, const Placement& placement) {
    Vec3 own;
    if (shape.getCenterPosition(own) != 0 && !placement.relative()) return std::nullopt;
    const std::optional<Vec3> center = placement.place(own);
    double radius = 0.0;
    shape.getRadius(radius);
    if (!center || !std::isfinite(radius)) return std::nullopt;

    RoundOutline out;
    out.center = *center;
    out.halfEast = out.halfNorth = std::abs(radius);
    if (const auto* orbit = shapeAs<Orbit>(shape)) {
        Vec3 second;
        if (orbit->getCenterPosition2(second) != 0) return std::nullopt;
        const std::optional<Vec3> center2 = placement.place(second);
        if (!center2) return std::nullopt;
        out.arcs = racetrackArcs(*center, *center2, std::abs(radius * placement.scale().x()));
        return out;
    }
    double start = 0.0;
    double sweep = -kTwoPi;
    if (const auto* elliptical = shapeAs<EllipticalShape>(shape)) {
        setHalves(*elliptical, out);
        double given = 0.0;
        if (shape.shapeType() != ShapeType::Ellipse && elliptical->getAngleSweep(given) == 0 &&
            std::abs(given) <= kTwoPi - 1e-9) {
            elliptical->getAngleStart(start);
            sweep = given;
            out.whole = false;
        }
    } else if (const auto* ellipsoid = shapeAs<Ellipsoid>(shape)) {
        setHalves(*ellipsoid, out);
    }
    const double halfEast = std::abs(out.halfEast * placement.scale().x());
    const double halfNorth = std::abs(out.halfNorth * placement.scale().y());
    if (!(halfEast > 0.0) || !(halfNorth > 0.0) || !std::isfinite(halfEast) || !std::isfinite(halfNorth))
        return std::nullopt;
    out.arcs.emplace_back(out.center, halfEast, halfNorth, placement.yaw(), start + placement.yaw(), sweep);
    return out;
}

}  // namespace halCore::ZEL
