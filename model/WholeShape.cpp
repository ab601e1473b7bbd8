#include "model/WholeShape.h"

#include <algorithm>
#include <utility>

#include "geo/Sodano.h"
#include "model/CylinderShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "model/ShapeKinds.h"
#include "model/ShapeMiddle.h"

namespace OverlayEditor {

namespace Sodano = halCore::Sodano;
using halCore::Vec3;

namespace {

/// Which way an elliptical shape is turned is no number of its panel, but stands in its block.
bool isElliptical(const CylinderShape& round) {
    return round.kind().radii == ShapeKind::Radii::Two && round.majorAxis() != round.minorAxis();
}

bool hasSector(const CylinderShape& round) {
    return round.kind().sector == ShapeKind::Sector::Drawn && round.startAnglePt();
}

}  // namespace

std::optional<Vec3> WholeShape::middleOf(const Shape& shape) {
    return ShapeMiddle().of(shape);
}

bool WholeShape::canTurn(const Shape& shape) {
    if (dynamic_cast<const RectangleShape*>(&shape)) return false;
    const auto* const round = dynamic_cast<const CylinderShape*>(&shape);
    return !round || dynamic_cast<const OrbitShape*>(round) || hasSector(*round) || isElliptical(*round);
}

WholeShape::WholeShape(Shape& shape)
    : middle_(*middleOf(shape)), before_(shape.placed()), revision_(before_.revision()) {
    const auto take = [this](const Vec3& place) {
        const auto way = Sodano::inverse(middle_, place);
        ways_.push_back({way.azimuth1, way.distance, place.alt() - middle_.alt(), place});
    };
    if (auto* const line = dynamic_cast<PolygonShape*>(&shape)) {
        std::ranges::for_each(line->points(), take);
        lay_ = [this, line](const Vec3& middle, double turnRad) {
            auto points = placed_(middle, turnRad);
            if (points) line->mouseSetPoints(std::move(*points));
            return points.has_value();
        };
    } else if (auto* const drawn = dynamic_cast<FreeDrawShape*>(&shape)) {
        for (const auto& each : drawn->lines()) std::ranges::for_each(each, take);
        lay_ = [this, drawn](const Vec3& middle, double turnRad) {
            drawn->setPoints(places_(middle, turnRad));
            return true;
        };
    } else if (auto* const orbit = dynamic_cast<OrbitShape*>(&shape)) {
        take(*orbit->centerPt());
        take(*orbit->centerPt2());
        lay_ = [this, orbit, turned = 0.0](const Vec3& middle, double turnRad) mutable {
            auto points = placed_(middle, turnRad);
            if (points) orbit->carryCenters(std::move(*points), turnRad - std::exchange(turned, turnRad));
            return points.has_value();
        };
    } else if (auto* const round = dynamic_cast<CylinderShape*>(&shape)) {
        take(middle_);
        const bool isHeaded = isElliptical(*round);
        const double start = isHeaded ? round->heading() : round->startAngle();
        lay_ = [this, round, isHeaded, start, end = round->endAngle(), extras = round->source().extras,
                turned = 0.0](const Vec3& middle, double turnRad) mutable {
            const auto points = placed_(middle, 0.0);
            if (!points) return false;
            if (points->given() != round->placed().given()) round->moveCenter(points->at(0));
            if (std::exchange(turned, turnRad) == turnRad) return true;
            if (isHeaded) {
                round->setExtras(extras);
                if (turnRad != 0.0) round->setHeading(start + turnRad);
            } else {
                round->setStartAngle(start + turnRad);
                round->setEndAngle(end + turnRad);
            }
            return true;
        };
    } else if (auto* const rectangle = dynamic_cast<RectangleShape*>(&shape)) {
        take(rectangle->anchorPlace());
        lay_ = [this, rectangle, size = rectangle->setSize()](const Vec3& middle, double) {
            const Vec3 anchor = places_(middle, 0.0).front();
            if (!isLifted_(middle, 0.0)) return rectangle->carry(anchor);
            rectangle->putBack(before_, size);
            const Vec3 first = *rectangle->firstCorner();
            if (anchor.alt() != first.alt())
                rectangle->setFirstCorner({first.lat(), first.lon(), anchor.alt()});
            return true;
        };
    }
}

bool WholeShape::isLifted_(const Vec3& middle, double turnRad) const {
    return turnRad == 0.0 && middle.lat() == middle_.lat() && middle.lon() == middle_.lon() &&
           before_.revision() == revision_;
}

std::vector<Vec3> WholeShape::places_(const Vec3& middle, double turnRad) const {
    const bool isLifted = isLifted_(middle, turnRad);
    const bool isLevel = middle.alt() == middle_.alt();
    std::vector<Vec3> places;
    places.reserve(ways_.size());
    for (const Way& way : ways_) {
        Vec3 place = isLifted ? way.place : Sodano::direct(middle, way.azimuth + turnRad, way.meters);
        place.setAlt(isLevel ? way.place.alt() : middle.alt() + way.above);
        places.push_back(place);
    }
    return places;
}

std::optional<PlacedPoints> WholeShape::placed_(const Vec3& middle, double turnRad) const {
    PlacedPoints points = before_;
    const bool stays = isLifted_(middle, turnRad) && middle.alt() == middle_.alt();
    if (stays || points.moveTo(places_(middle, turnRad))) return points;
    return std::nullopt;
}

bool WholeShape::lay(const Vec3& middle, double turnRad) {
    return lay_(middle, turnRad);
}

}  // namespace OverlayEditor
