#include "tools/ShapeOutline.h"

#include <algorithm>
#include <cmath>

#include "geo/Angles.h"
#include "geo/GeodesicPath.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "model/ShapeKinds.h"

namespace OverlayEditor {

using halCore::Vec3;

namespace {

/// Straight pieces of a side leave it by 8 m then.
constexpr double kStepMeters = 20e3;
/// Of a curve from its pieces, as a part of its radius.
constexpr double kTolerance = 1e-4;

std::vector<halCore::EllipticalArc> arcsOf(const CylinderShape& round) {
    if (!round.isComplete() || !round.centerPt()) return {};
    if (const auto* const orbit = dynamic_cast<const OrbitShape*>(&round))
        return halCore::racetrackArcs(*orbit->centerPt(), *orbit->centerPt2(),
                                      orbit->minorAxisPt() ? orbit->minorAxis() : OrbitShape::kDefaultRadius);
    const double east = round.majorAxis();
    const double north = round.minorAxis() > 0.0 ? round.minorAxis() : east;
    const double start = round.startAngle();
    const bool isSector = round.kind().sector == ShapeKind::Sector::Drawn && round.startAnglePt();
    double sweep = isSector ? round.endAngle() - start : halCore::kTwoPi;
    if (sweep <= 0.0) sweep += halCore::kTwoPi;
    return {{*round.centerPt(), east, north, round.heading(), start + round.heading(), sweep}};
}

}  // namespace

const std::vector<PluginUtils::PUDrawPath>& ShapeOutline::of(const Shape& shape, std::uint64_t revision) {
    const std::uint64_t frame = shape.placed().revision();
    if (shape_ == &shape && revision_ == revision && frame_ == frame) return paths_;
    shape_ = &shape;
    revision_ = revision;
    frame_ = frame;
    paths_.clear();
    build_(shape);
    return paths_;
}

void ShapeOutline::build_(const Shape& shape) {
    const auto* const outlined = dynamic_cast<const BaseLineShape*>(&shape);
    if (!outlined) return;
    const auto add = [&](const std::vector<Vec3>& corners, bool closed) {
        if (corners.empty() || !std::ranges::all_of(corners, isPlace)) return;
        halCore::GeodeticPath path{corners.front()};
        for (std::size_t i = 1; i < corners.size(); ++i)
            halCore::appendPath(path, corners[i], halCore::PathKind::Geodesic, kStepMeters);
        if (closed) halCore::appendPath(path, corners.front(), halCore::PathKind::Geodesic, kStepMeters);
        paths_.emplace_back(halCore::toEcef(path), outlined->lineColor(), outlined->lineWidth());
    };
    if (const auto* const line = dynamic_cast<const PolygonShape*>(&shape)) {
        add(line->points(), line->subtype() == PolygonShape::Polygon);
    } else if (const auto* const rectangle = dynamic_cast<const RectangleShape*>(&shape)) {
        add(rectangle->corners(), true);
    } else if (const auto* const drawn = dynamic_cast<const FreeDrawShape*>(&shape)) {
        for (const auto& each : drawn->lines()) add(each, false);
    } else if (const auto* const round = dynamic_cast<const CylinderShape*>(&shape)) {
        std::vector<Vec3> rim;
        for (const auto& arc : arcsOf(*round)) {
            const auto path = arc.path(kTolerance * arc.longerHalf());
            rim.insert(rim.end(), path.begin(), path.end());
        }
        // A sector is closed over its centre, an arc is not.
        const bool isWedge = round->subtype() == CylinderShape::Wedge &&
                             round->endAngle() - round->startAngle() != halCore::kTwoPi;
        if (isWedge && round->centerPt()) rim.push_back(*round->centerPt());
        add(rim, isWedge || dynamic_cast<const OrbitShape*>(round));
    }
}

}  // namespace OverlayEditor
