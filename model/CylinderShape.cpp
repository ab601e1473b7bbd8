#include "model/CylinderShape.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "common/Notify.h"
#include "geo/Angles.h"
#include "geo/Sodano.h"
#include "geo/Wgs84.h"
#include "model/ShapeKinds.h"

namespace OverlayEditor {
namespace {

namespace Sodano = halCore::Sodano;
using halCore::Vec3;
using EditPoint = CylinderShape::EditPoint;

constexpr double kEast = halCore::kHalfPi;
constexpr double kNorth = 0.0;
/// Where an angle point stands while there is no radius.
constexpr double kStandInRadius = 1000.0;
constexpr double kSameAngle = 1e-10;
/// Directions in which the rim is sampled for the bounding box; a multiple of four, so that the points due
/// north, east, south and west are among them.
constexpr int kRimSamples = 128;
/// Pieces of a straight side of a sector, for the same.
constexpr int kSideSamples = 32;

double normalized(double radians) {
    if (radians >= 0.0 && radians < halCore::kTwoPi) return radians;
    double rest = std::fmod(radians, halCore::kTwoPi);
    if (std::abs(rest) < kSameAngle) rest = 0.0;
    return rest < 0.0 ? rest + halCore::kTwoPi : rest;
}

bool accepted(double meters) {
    if (CylinderShape::isRadius(meters)) return true;
    if (halNotify::isNotifyEnabled(halNotify::Warning))
        halNotify::notify(halNotify::Warning)
            << "A radius of " << meters << " m is refused: it reaches round more than half of the earth";
    return false;
}

bool samePlace(const Vec3& a, const Vec3& b) {
    return a.lat() == b.lat() && a.lon() == b.lon();
}

}  // namespace

CylinderShape::CylinderShape(const Preferences& preferences, Subtype subtype)
    : Equipped(preferences), subtype_(subtype) {
    if (hasKind_()) setName(kind().name);
}

const ShapeKind& CylinderShape::kindOf(Subtype subtype) {
    // Behind the last one stands the orbit.
    return shapeKind(
        static_cast<ShapeKind::Id>(ShapeKind::Circle + static_cast<int>(std::min(subtype, NoSubtype))));
}

CylinderShape::CylinderShape(const CylinderShape& other)
    : Equipped(other), subtype_(other.subtype_), round_(other.round_) {}

int CylinderShape::serialize(Serializer& serializer) {
    if (!hasKind_() || !hasCenter_()) return 1;
    if (round_->requiresAllPoints && !isComplete()) return 1;
    serializer.beginShape(kind().written, writtenPlatform_());
    give_(serializer, Serializer::Use::Point, points_.given()[First]);
    if (const double major = majorAxis(); major != 0.0) serializer.setMajorRadius(major);
    if (const double minor = minorAxis(); minor != 0.0) serializer.setMinorRadius(minor);
    if (hasPoint_(EditPoint::StartAngle)) serializer.setStartEndAngles(startAngle(), endAngle());
    serializer.setHeight(height_());
    BaseFilledShape::serialize(serializer);
    serializer.endShape();
    return 0;
}

bool CylinderShape::isComplete() const {
    if (!hasKind_()) return true;
    if (!hasCenter_() || majorAxis() == 0.0) return false;
    return kind().radii != ShapeKind::Radii::Two || minorAxis() != 0.0;
}

// Numbers and points

std::optional<double> CylinderShape::kept_(EditPoint role) const {
    const SetNumber* const number = round_->numbers[index_(role)];
    const Vec3* const center = round_->places[index_(EditPoint::Center)];
    const Vec3* const place = round_->places[index_(role)];
    if (!number || !center || !place) return std::nullopt;
    const bool stands = role == EditPoint::Height
                            ? number->center.alt() == center->alt() && number->point.alt() == place->alt()
                            : samePlace(number->center, *center) && samePlace(number->point, *place);
    return stands ? std::optional(number->value) : std::nullopt;
}

void CylinderShape::keep_(EditPoint role, double value) const {
    const auto center = known_(EditPoint::Center);
    const auto place = known_(role);
    if (center && place) round_.change().numbers.set(index_(role), {value, *center, *place});
}

void CylinderShape::setKnown_(EditPoint role, const std::optional<Vec3>& place) const {
    auto& places = round_.change().places;
    if (place)
        places.set(index_(role), *place);
    else
        places.reset(index_(role));
}

void CylinderShape::place_(EditPoint role, const Vec3& lla) {
    setKnown_(role, lla);
    round_.change().marks.reset(index_(role));
}

bool CylinderShape::liftMark_(EditPoint role, double meters) {
    const auto before = known_(role);
    if (!before || before->alt() == meters) return false;
    RoundState& round = round_.change();
    if (Mark* const mark = round.marks[index_(role)]) mark->above += meters - before->alt();
    round.places[index_(role)]->setAlt(meters);
    return true;
}

void CylinderShape::turnMark_(EditPoint role, double radians) {
    captureMarks_();
    if (round_->marks[index_(role)]) round_.change().marks[index_(role)]->azimuth += radians;
}

void CylinderShape::sync_() const {
    const auto placeOf = [this](Position position) {
        const bool stands = points_.has(position) && isPlace(points_.places()[position]);
        return stands ? std::optional(points_.places()[position]) : std::nullopt;
    };
    const auto second = known_(EditPoint::MajorAxis);
    const auto firstNow = placeOf(First);
    const auto secondNow = hasKind_() ? second : placeOf(Second);
    if (firstNow == known_(EditPoint::Center) && secondNow == second) return;
    captureMarks_();
    setKnown_(EditPoint::Center, firstNow);
    setKnown_(EditPoint::MajorAxis, secondNow);
    placeMarks_();
}

void CylinderShape::captureMarks_() const {
    for (std::size_t i = 0; i < kEditPoints; ++i) {
        const auto role = static_cast<EditPoint>(i);
        const auto place = known_(role);
        if (!isMark_(role) || round_->marks[i] || !place) continue;
        const Position anchor = anchorOf_(role);
        const auto center = known_(anchor == First ? EditPoint::Center : EditPoint::MajorAxis);
        if (!center) continue;
        const auto way = Sodano::inverse(*center, *place);
        Mark mark{way.azimuth1, way.distance, place->alt() - center->alt(), number_(role), anchor};
        if (role == EditPoint::Height) mark.above = mark.number;
        round_.change().marks.set(i, mark);
    }
}

void CylinderShape::placeMarks_() const {
    for (std::size_t i = 0; i < kEditPoints; ++i) {
        const auto role = static_cast<EditPoint>(i);
        if (!round_->marks[i]) continue;
        const Mark mark = *round_->marks[i];
        const auto center = known_(mark.anchor == First ? EditPoint::Center : EditPoint::MajorAxis);
        auto place = center;
        if (center && role != EditPoint::Height) place = Sodano::direct(*center, mark.azimuth, mark.distance);
        if (center) place->setAlt(center->alt() + mark.above);
        setKnown_(role, place);
        if (center) keep_(role, mark.number);
    }
}

bool CylinderShape::putCenter_(Position position, const PlacedPoint& point, std::optional<EditPoint> along) {
    sync_();
    if (along) captureMarks_();
    const Mark* const mark = along ? round_->marks[index_(*along)] : nullptr;
    const auto kept = mark ? std::optional(*mark) : std::nullopt;
    if (!putPlaced_(position, point)) return false;
    const EditPoint center = position == First ? EditPoint::Center : EditPoint::MajorAxis;
    if (known_(center) && isPlace(points_.place(position))) {
        setKnown_(center, points_.place(position));
        RoundState& round = round_.change();
        for (std::size_t i = 0; i < kEditPoints; ++i)
            if (round.places[i]) round.marks.reset(i);
    }
    // From or to nowhere the other points go where it goes.
    sync_();
    if (kept) {
        round_.change().marks.set(index_(*along), *kept);
        if (kept->anchor == position) placeMarks_();
    }
    return true;
}

void CylinderShape::placeAt_(EditPoint role, double azimuth, double meters, double number) {
    if (!centerPt()) {
        setKnown_(role, std::nullopt);
        round_.change().marks.set(index_(role), {azimuth, meters, 0.0, number});
        return;
    }
    place_(role, Sodano::direct(*centerPt(), azimuth, meters));
    keep_(role, number);
}

void CylinderShape::placeHeight_(double meters) {
    if (!centerPt()) {
        round_.change().marks.set(index_(EditPoint::Height), {0.0, 0.0, meters, meters});
        return;
    }
    place_(EditPoint::Height, {centerPt()->lat(), centerPt()->lon(), centerPt()->alt() + meters});
    keep_(EditPoint::Height, meters);
}

void CylinderShape::placeOwnHeight_() {
    if (subtype_ != Ellipsoid || round_->heightGiven) return;
    if (const double longer = std::max(majorAxis(), minorAxis()); longer > 0.0) placeHeight_(longer);
}

void CylinderShape::placeAngle_(EditPoint role, double radians) {
    placeAt_(role, radians, rimDistance_(radians), radians);
}

void CylinderShape::placeSector_() {
    // Not the end angle: from a full turn that would come back a last digit beside the start.
    const double end = number_(EditPoint::EndAngle);
    if (hasPoint_(EditPoint::StartAngle)) placeAngle_(EditPoint::StartAngle, startAngle());
    if (hasPoint_(EditPoint::EndAngle)) placeAngle_(EditPoint::EndAngle, end);
}

double CylinderShape::rimDistance_(double azimuth) const {
    const double east = majorAxis();
    const double north = minorAxis();
    if (!(east > 0.0)) return north > 0.0 ? north : kStandInRadius;
    if (!(north > 0.0)) return east;
    return 1.0 / std::hypot(std::sin(azimuth) / east, std::cos(azimuth) / north);
}

double CylinderShape::measured_(EditPoint role) const {
    const auto center = known_(EditPoint::Center);
    const auto place = known_(role);
    if (!center || !place) return 0.0;
    if (role == EditPoint::Height) return place->alt() - center->alt();
    const auto way = Sodano::inverse(*center, *place);
    const bool isAngle = role == EditPoint::StartAngle || role == EditPoint::EndAngle;
    return isAngle ? normalized(way.azimuth1) : way.distance;
}

double CylinderShape::number_(EditPoint role) const {
    if (const Mark* const mark = round_->marks[index_(role)]) return mark->number;
    const auto kept = kept_(role);
    return kept ? *kept : measured_(role);
}

double CylinderShape::majorAxis() const {
    sync_();
    return number_(EditPoint::MajorAxis);
}

double CylinderShape::minorAxis() const {
    sync_();
    return number_(EditPoint::MinorAxis);
}

double CylinderShape::height_() const {
    sync_();
    return subtype_ == Sphere ? majorAxis() : number_(EditPoint::Height);
}

double CylinderShape::startAngle() const {
    sync_();
    return number_(EditPoint::StartAngle);
}

double CylinderShape::endAngle() const {
    if (!hasCenter_() || !hasPoint_(EditPoint::EndAngle)) return 0.0;
    const double end = number_(EditPoint::EndAngle);
    return end == startAngle() ? end + halCore::kTwoPi : end;
}

// Setters

void CylinderShape::setCenter(const PlacedPoint& point) {
    const double height = height_();
    if (!putCenter_(First, point)) return;
    if (hasPoint_(EditPoint::Height)) placeHeight_(height);
    placeOwnHeight_();
    dirty_();
}

void CylinderShape::moveCenter(const PlacedPoint& point) {
    if (!hasCenter_()) {
        setCenter(point);
        return;
    }
    sync_();
    if (!putPlaced_(First, point)) return;
    sync_();
    dirty_();
}

bool CylinderShape::isRadius(double meters) {
    return std::abs(meters) <= halCore::wgs84::halfMeridian;
}

void CylinderShape::setMajorRadius(double meters) {
    if (!hasCenter_() || !isMark_(EditPoint::MajorAxis) || !accepted(meters)) return;
    placeAt_(EditPoint::MajorAxis, kEast, std::abs(meters), std::abs(meters));
    placeSector_();
    placeOwnHeight_();
    dirty_();
}

void CylinderShape::setMinorRadius(double meters) {
    if (!hasCenter_() || !accepted(meters)) return;
    placeAt_(EditPoint::MinorAxis, kNorth, std::abs(meters), std::abs(meters));
    placeSector_();
    placeOwnHeight_();
    dirty_();
}

void CylinderShape::put_(EditPoint role, const Vec3& lla) {
    // About a centre that is nowhere there are only numbers.
    if (isMark_(role) && hasCenter_() && !centerPt()) return;
    if (isMark_(role))
        place_(role, lla);
    else
        putCenter_(Second, PlacedPoint(lla));
    placeOwnHeight_();
    dirty_();
}

void CylinderShape::setInnerRadius(double meters) {
    setMajorRadius(meters);
    setMinorRadius(meters);
}

void CylinderShape::setStartAngle(double radians) {
    if (!hasCenter_() || !std::isfinite(radians)) return;
    placeAngle_(EditPoint::StartAngle, normalized(radians));
    dirty_();
}

void CylinderShape::setEndAngle(double radians) {
    if (!hasCenter_() || !std::isfinite(radians)) return;
    double end = normalized(radians);
    // A full turn loses a last digit on its way here; a small sector is none.
    const double start = startAngle();
    if (hasPoint_(EditPoint::StartAngle) && std::abs(radians - start) > halCore::kPi &&
        std::abs(std::remainder(radians - start, halCore::kTwoPi)) < kSameAngle)
        end = start;
    placeAngle_(EditPoint::EndAngle, end);
    dirty_();
}

void CylinderShape::setHeight(double meters) {
    if (!hasCenter_() || !std::isfinite(meters)) return;
    if (subtype_ == Ellipsoid && meters <= 0.0) {
        meters = 1.0;
        if (panel_()) panel_()->setHeight(meters);
    }
    round_.change().heightGiven = true;
    placeHeight_(meters);
    dirty_();
}

void CylinderShape::updatePoints() {
    if (!hasCenter_() || !hasKind_()) return;
    if (hasPoint_(EditPoint::MajorAxis)) placeAt_(EditPoint::MajorAxis, kEast, majorAxis(), majorAxis());
    if (hasPoint_(EditPoint::MinorAxis)) placeAt_(EditPoint::MinorAxis, kNorth, minorAxis(), minorAxis());
    placeSector_();
    dirty_();
}

void CylinderShape::setEditPointsShown(bool shown, bool height) {
    editPointsShown_ = shown;
    heightPointShown_ = shown && height;
}

void CylinderShape::clear() {
    points_.clear();
    RoundState& round = round_.change();
    round.places = {};
    round.marks = {};
    round.heightGiven = false;
    hide_();
    changed_();
}

void CylinderShape::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    sync_();
    if (takeAttachment_(id, converter, anchorCenter) && hasCenter_()) dirty_();
    fillGui();
}

// The part of the earth that the shape covers

void CylinderShape::includeSector_(const Sector& sector, std::pair<Vec3, Vec3>& bounds) {
    const Vec3& center = sector.center;
    const auto include = [&](double azimuth, double part) {
        Vec3 point = Sodano::direct(center, azimuth, part * sector.distance(azimuth));
        point.setLon(center.lon() + halCore::wrapToPi(point.lon() - center.lon()));
        updateBounds_(point, bounds);
    };
    constexpr double step = halCore::kTwoPi / kRimSamples;
    const double endRad = sector.startRad + sector.sweepRad;
    const bool whole = sector.sweepRad >= halCore::kTwoPi;
    include(sector.startRad, 1.0);
    for (double at = std::ceil(sector.startRad / step) * step; at < endRad; at += step) include(at, 1.0);
    include(endRad, 1.0);
    if (sector.filled && !whole)
        for (int i = 0; i < kSideSamples; ++i)
            for (const double side : {sector.startRad, endRad})
                include(side, static_cast<double>(i) / kSideSamples);
    for (const double pole : {halCore::kHalfPi, -halCore::kHalfPi}) {
        const auto way = Sodano::inverse(center.lat(), center.lon(), pole, center.lon());
        // From a pole every way leads about it.
        const bool within = whole || way.distance == 0.0 ||
                            halCore::wrapToTwoPi(way.azimuth1 - sector.startRad) <= sector.sweepRad;
        if (!within || way.distance > sector.distance(way.azimuth1)) continue;
        const double lat = sector.filled ? pole : bounds.first.lat();
        updateBounds_({lat, center.lon() - halCore::kPi, center.alt()}, bounds);
        updateBounds_({lat, center.lon() + halCore::kPi, center.alt()}, bounds);
    }
}

std::pair<Vec3, Vec3> CylinderShape::boundingBox() const {
    std::pair<Vec3, Vec3> bounds;
    initBounds_(bounds);
    if (!centerPt()) return bounds;
    const Vec3 center = *centerPt();

    Sector sector{.center = center, .distance = [this](double azimuth) { return rimDistance_(azimuth); }};
    const bool hasSector = startAnglePt() && kind().sector == ShapeKind::Sector::Drawn;
    if (hasSector) {
        sector.startRad = startAngle();
        sector.sweepRad = endAngle() - sector.startRad;
        if (sector.sweepRad <= 0.0) sector.sweepRad += halCore::kTwoPi;
    }
    const double radius = std::max(majorAxis(), minorAxis());
    // An arc is only its rim unless it is filled; everything else holds its centre.
    sector.filled = subtype_ != Arc || !hasSector || filled() || radius == 0.0;
    if (sector.filled) updateBounds_(center, bounds);
    if (radius > 0.0) includeSector_(sector, bounds);

    double above = 0.0;
    if (kind().height == ShapeKind::Height::Own) above = height_();
    if (kind().height == ShapeKind::Height::Radius) above = majorAxis();
    const double below = kind().reachesBelow ? -above : 0.0;
    bounds.first.setAlt(center.alt() + std::min(above, below));
    bounds.second.setAlt(center.alt() + std::max(above, 0.0));
    return bounds;
}

// State

void CylinderShape::saveState_(ShapeState& state, const ShapeState* like) const {
    BaseFilledShape::saveState_(state, like);
    state.kind = static_cast<ShapeKind::Id>(&kind() - shapeKinds().data());
    // In a frame the edit points lie about their centres, wherever these are.
    if (points_.frame()) {
        sync_();
        captureMarks_();
    }
    auto& own = state.own.emplace<Shared<RoundState>>(round_);
    if (!points_.frame()) return;
    for (std::size_t i = 0; i < kEditPoints; ++i) {
        if (isMark_(static_cast<EditPoint>(i)) && !round_->marks[i]) continue;
        own.change().places.reset(i);
        own.change().numbers.reset(i);
    }
}

void CylinderShape::takeState_(const ShapeState& state) {
    BaseFilledShape::takeState_(state);
    round_ = std::get<Shared<RoundState>>(state.own);
}

// Panel

void CylinderShape::showIn_(CylinderPanel& panel) {
    shownCenter_ = std::make_unique<const PlacedPoint>(hasCenter_() ? points_.at(First) : start_());
    panel.setDrawCheck(shown());
    panel.setCenterLla(*shownCenter_);
    panel.setXradius(majorAxis());
    panel.setYradius(minorAxis());
    panel.setHeight(height_());
    panel.setStartEndAngles(startAngle(), endAngle());
    showStyles_(panel.lineStyle(), panel.fillStyle());
}

void CylinderShape::takeFrom_(CylinderPanel& panel) {
    const auto center = panel.centerLla();
    const auto x = panel.xRadius();
    const auto y = panel.yRadius();
    const auto height = panel.height();
    const auto start = panel.startAngle();
    const auto end = panel.endAngle();
    const bool drawn = panel.drawCheck();

    if (drawn != shown()) setShown(drawn);
    if (center && (hasCenter_() || panel.placesCenter()))
        moveCenter(*center);
    else if (!hasCenter_() && (x || y || height || start || end))
        // The user fills in a shape about the centre that stands in the panel.
        setCenter(center.value_or(*shownCenter_));
    else if (center)
        setAltitudeAhead(center->place.alt());
    if (x) setMajorRadius(*x);
    if (y) setMinorRadius(*y);
    if (height) setHeight(*height);
    // A bound that nobody gave stands where the panel shows it, and bounds that show the same are a full
    // turn.
    const bool bounded = (start || end) && hasCenter_();
    if (start || (bounded && !hasPoint_(EditPoint::StartAngle))) setStartAngle(start.value_or(startAngle()));
    if (end || (bounded && !hasPoint_(EditPoint::EndAngle))) {
        const double bound = end.value_or(0.0);
        setEndAngle(std::abs(bound - startAngle()) < kSameAngle ? startAngle() : bound);
    }
    takeStyles_(panel.lineStyle(), panel.fillStyle());
}

}  // namespace OverlayEditor
