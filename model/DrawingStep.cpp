#include "model/DrawingStep.h"

#include <utility>
#include <vector>

#include "common/Strings.h"
#include "geo/OffsetGrid.h"
#include "geo/Sodano.h"
#include "geo/Wgs84.h"
#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/OrbitShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "model/ShapeKinds.h"

namespace OverlayEditor {

namespace {

using halCore::Vec3;
using UTILS::TypedLength;
using UTILS::TypedOffset;
using UTILS::TypedPlaces;
using UTILS::TypedSector;
using UTILS::TypedShift;
using UTILS::TypedStep;
using UTILS::TypedWay;

/// A step, about to be taken.
class Taking {
  public:
    Taking(Shape& shape, const TypedStep& step, double altitude)
        : shape_(shape), units_(*shape.preferences().unitsProvider()), step_(step), altitude_(altitude) {
        if (const auto* const shift = std::get_if<TypedShift>(&step)) way_ = shift->way();
        if (const auto* const way = std::get_if<TypedWay>(&step)) way_ = *way;
    }

    void take(PolygonShape& line);
    void take(OrbitShape& orbit);
    void take(CylinderShape& round);
    void take(RectangleShape& rectangle);
    void take(AnnotationShape& label);
    void refuse(std::string reason) { taken_.reason = std::move(reason); }

    StepTaken taken() const { return taken_; }

  private:
    template <typename Step>
    const Step* is_() const {
        return std::get_if<Step>(&step_);
    }
    const PointConverter* frame_() const { return shape_.placed().frame(); }
    /// What the shape is attached to.
    std::optional<PlacedPoint> reference_() const;
    /// What the step counts from.
    std::optional<PlacedPoint> origin_(std::size_t points) const;
    /// The places that the step leads to; none, and refused, when it leads to none.
    std::vector<PlacedPoint> places_(const std::optional<PlacedPoint>& origin);
    /// The one place, and tells it.
    std::optional<PlacedPoint> place_(const std::optional<PlacedPoint>& origin, const std::string& name);
    void tellPlace_(const std::string& name, const PlacedPoint& point);
    /// The length, or how far the step leads from a centre.
    std::optional<double> distance_(const Vec3& center, const std::string& name);
    std::optional<double> azimuth_(const Vec3& center) const;
    bool isRadius_(double meters);
    /// Puts the centre of a round shape that has none. \return whether the step is still to be taken
    bool center_(CylinderShape& round, const std::string& name);
    void sector_(CylinderShape& round, const Vec3& center);
    void close_(CylinderShape& round, double radius);
    void complete_() { refuse(std::string("\"").append(shape_.name()).append("\" is complete")); }

    Shape& shape_;
    const UTILS::TspiUnitsProviderAdapter& units_;
    const TypedStep& step_;
    double altitude_;
    std::optional<TypedWay> way_;
    StepTaken taken_;
};

std::optional<PlacedPoint> Taking::reference_() const {
    if (!frame_()) return std::nullopt;
    Vec3 place;
    frame_()->getReferenceLla(place);
    return PlacedPoint(Vec3(), place);
}

std::optional<PlacedPoint> Taking::origin_(std::size_t points) const {
    return points > 0 ? std::optional(shape_.placed().at(points - 1)) : reference_();
}

std::vector<PlacedPoint> Taking::places_(const std::optional<PlacedPoint>& origin) {
    std::vector<PlacedPoint> found;
    if (const auto* const typed = is_<TypedPlaces>()) {
        for (const auto& each : typed->places)
            found.emplace_back(Vec3(each.lat, each.lon, each.alt.value_or(altitude_)));
    } else if (const auto* const offset = is_<TypedOffset>(); offset && frame_()) {
        const double height = origin && origin->offset ? origin->offset->z() : 0.0;
        const Vec3 xyz(offset->x, offset->y, offset->z.value_or(height));
        const auto place = placeOf(*frame_(), xyz);
        if (place)
            found.emplace_back(xyz, *place);
        else
            refuse("no place has this offset");
    } else if (way_ && (!origin || !isPlace(origin->place))) {
        refuse("there is no point yet to count from: type a position first");
    } else if (way_) {
        found.emplace_back(halCore::Sodano::direct(origin->place, way_->azimuthRad, way_->meters));
    } else {
        refuse("a position is missing here, or a distance and a direction");
    }
    return found;
}

void Taking::tellPlace_(const std::string& name, const PlacedPoint& point) {
    taken_.place = point.place;
    taken_.done = name + ": ";
    if (is_<TypedOffset>()) {
        taken_.done += units_.formatRange(point.offset->x()) + ", " + units_.formatRange(point.offset->y()) +
                       ", " + units_.formatRange(point.offset->z()) + " ";
        taken_.done += UTILS::unitsGetAbbreviation(units_.rangeUnits());
        return;
    }
    taken_.done += units_.formatLatitude(point.place.lat()) + " " + units_.formatLongitude(point.place.lon());
    if (point.place.alt() != 0.0) {
        taken_.done.append(" ").append(units_.formatAltitude(point.place.alt())).append(" ");
        taken_.done += UTILS::unitsGetAbbreviation(units_.altitudeUnits());
    }
}

std::optional<PlacedPoint> Taking::place_(const std::optional<PlacedPoint>& origin, const std::string& name) {
    const auto places = places_(origin);
    if (places.empty()) return std::nullopt;
    if (places.size() > 1) {
        refuse("these are several positions, and here is one");
        return std::nullopt;
    }
    tellPlace_(name, places.front());
    return places.front();
}

std::optional<double> Taking::distance_(const Vec3& center, const std::string& name) {
    double meters = 0.0;
    if (const auto* const length = is_<TypedLength>()) {
        meters = length->metersAsRange;
    } else if (way_) {
        meters = way_->meters;
    } else if (is_<TypedSector>()) {
        refuse("a length alone, or a position, is missing here");
        return std::nullopt;
    } else {
        const auto place = place_(std::nullopt, name);
        if (!place) return std::nullopt;
        meters = halCore::Sodano::inverse(center, place->place).distance;
    }
    if (!isRadius_(meters)) return std::nullopt;
    taken_.done = name + ": " + units_.formatRange(meters) + " ";
    taken_.done += UTILS::unitsGetAbbreviation(units_.rangeUnits());
    return meters;
}

std::optional<double> Taking::azimuth_(const Vec3& center) const {
    if (way_) return way_->azimuthRad;
    return taken_.place ? std::optional(halCore::Sodano::inverse(center, *taken_.place).azimuth1)
                        : std::nullopt;
}

bool Taking::isRadius_(double meters) {
    if (!(meters > 0.0))
        refuse("a radius is greater than 0");
    else if (!CylinderShape::isRadius(meters))
        refuse("this reaches round more than half of the earth");
    return taken_.reason.empty();
}

bool Taking::center_(CylinderShape& round, const std::string& name) {
    if (round.placed().has(0)) return true;
    const bool isNumber = is_<TypedLength>() || is_<TypedSector>();
    const auto reference = reference_();
    if (isNumber && !reference) {
        refuse("there is no center yet: type its position first");
        return false;
    }
    if (isNumber) {
        round.setCenter(*reference);
        return true;
    }
    if (const auto point = place_(reference, name)) round.setCenter(*point);
    return false;
}

void Taking::take(PolygonShape& line) {
    const std::size_t before = line.getNumPoints();
    const auto places = places_(origin_(before));
    for (const PlacedPoint& point : places) line.setPlacedPointAtIndex(line.getNumPoints(), point);
    if (places.empty()) return;
    tellPlace_(std::string("Point ").append(std::to_string(before + places.size())), places.back());
    if (line.getNumPoints() != before + places.size()) refuse("no offset leads there");
}

void Taking::take(AnnotationShape& label) {
    if (label.hasPoint()) return complete_();
    if (const auto point = place_(reference_(), "Position")) label.showPosition(*point);
}

void Taking::take(RectangleShape& rectangle) {
    if (rectangle.isComplete()) return complete_();
    if (!rectangle.placed().has(0)) {
        if (const auto point = place_(reference_(), "First corner")) rectangle.setFirstCorner(*point);
        return;
    }
    const PlacedPoint first = rectangle.placed().at(0);
    const auto point = place_(first, "Opposite corner");
    if (!point) return;
    if (point->place.lat() == first.place.lat() && point->place.lon() == first.place.lon())
        return refuse("this is the first corner");
    rectangle.setLastCorner(*point);
}

void Taking::take(OrbitShape& orbit) {
    if (!orbit.placed().has(0)) {
        if (const auto point = place_(reference_(), "Center 1")) orbit.setCenter(*point);
    } else if (!orbit.placed().has(1)) {
        if (const auto point = place_(orbit.placed().at(0), "Center 2")) orbit.setCenter2(*point);
    } else if (orbit.minorAxisPt() || !orbit.centerPt()) {
        complete_();
    } else if (is_<TypedPlaces>() || is_<TypedOffset>()) {
        const auto point = place_(std::nullopt, "Radius");
        if (point && isRadius_(orbit.getShortestDistance_(point->place))) orbit.setMinorRadius(point->place);
    } else if (const auto radius = distance_(*orbit.centerPt(), "Radius")) {
        orbit.setMinorRadius(*radius);
    }
}

void Taking::close_(CylinderShape& round, double radius) {
    const bool isWedge = round.kind().sector == ShapeKind::Sector::Drawn;
    const bool hasHeight = round.kind().height == ShapeKind::Height::Own;
    if (isWedge && hasHeight) round.setHeight(CylinderShape::kWedgeHeight);
    if (!isWedge && !hasHeight) round.setHeight(0.0);
    // Last: with it the shape is complete, and shown.
    round.setMinorRadius(radius);
    round.updatePoints();
}

void Taking::sector_(CylinderShape& round, const Vec3& center) {
    if (const auto* const sector = is_<TypedSector>()) {
        if (!isRadius_(sector->meters)) return;
        round.setMajorRadius(sector->meters);
        round.setStartAngle(sector->startRad);
        round.setEndAngle(sector->endRad);
        close_(round, sector->meters);
        taken_.done = std::string("Radius: ").append(units_.formatRange(sector->meters)).append(" ");
        taken_.done += UTILS::unitsGetAbbreviation(units_.rangeUnits());
        taken_.done += ", from " + units_.formatAngle(sector->startRad) + " to " +
                       units_.formatAngle(sector->endRad) + " ";
        taken_.done += UTILS::unitsGetAbbreviation(units_.angleUnits());
        return;
    }
    if (is_<TypedLength>()) return refuse("the angles are missing, too: type \"12 nm 270 330\"");
    const bool isStart = !round.startAnglePt();
    const auto radius = distance_(center, isStart ? "Start, radius" : "End, radius");
    const auto azimuth = radius ? azimuth_(center) : std::nullopt;
    if (!azimuth) return;
    round.setMajorRadius(*radius);
    if (isStart) return round.setStartAngle(*azimuth);
    round.setEndAngle(*azimuth);
    close_(round, *radius);
}

void Taking::take(CylinderShape& round) {
    if (round.isComplete()) {
        const auto* const height = is_<TypedLength>();
        if (!height || round.kind().height != ShapeKind::Height::Own) return complete_();
        round.setHeight(height->metersAsAltitude);
        taken_.done =
            std::string("Height: ").append(units_.formatAltitude(height->metersAsAltitude)).append(" ");
        taken_.done += UTILS::unitsGetAbbreviation(units_.altitudeUnits());
        return;
    }
    const bool isBegun = round.placed().has(0);
    if (!center_(round, "Center")) return;
    const auto center = round.centerPt();
    if (!center) return refuse("its center has no place now");
    if (round.kind().sector == ShapeKind::Sector::Drawn) {
        sector_(round, *center);
    } else {
        const bool hasTwo = round.kind().radii == ShapeKind::Radii::Two;
        const bool isFirst = round.majorAxis() == 0.0;
        const auto radius = distance_(*center, !hasTwo ? "Radius" : isFirst ? "X radius" : "Y radius");
        if (radius && isFirst && !way_ && taken_.place)
            round.setMajorRadius(*taken_.place);
        else if (radius && isFirst)
            round.setMajorRadius(*radius);
        else if (radius)
            close_(round, *radius);
    }
    if (!taken_.reason.empty() && !isBegun) round.clear();
}

}  // namespace

StepTaken takeStep(Shape& shape, const TypedStep& step, double altitude) {
    Taking taking(shape, step, altitude);
    if (auto* const line = dynamic_cast<PolygonShape*>(&shape))
        taking.take(*line);
    else if (auto* const orbit = dynamic_cast<OrbitShape*>(&shape))
        taking.take(*orbit);
    else if (auto* const round = dynamic_cast<CylinderShape*>(&shape))
        taking.take(*round);
    else if (auto* const rectangle = dynamic_cast<RectangleShape*>(&shape))
        taking.take(*rectangle);
    else if (auto* const label = dynamic_cast<AnnotationShape*>(&shape))
        taking.take(*label);
    else
        taking.refuse("a shape of this kind is drawn by hand alone");
    return taking.taken();
}

}  // namespace OverlayEditor
