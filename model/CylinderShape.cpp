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
#include "model/Utils.h"

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
    : Equipped(other),
      subtype_(other.subtype_),
      places_(other.places_),
      numbers_(other.numbers_),
      requiresAllPoints_(other.requiresAllPoints_) {}

int CylinderShape::serialize(Serializer& serializer) {
    if (!hasKind_() || !centerPt()) return 1;
    if (requiresAllPoints_ && !isComplete()) return 1;
    serializer.beginShape(kind().written, attachedPlatformId_);
    serializer.addPoint(*centerPt());
    if (const double major = majorAxis(); major != 0.0) serializer.setMajorRadius(major);
    if (const double minor = minorAxis(); minor != 0.0) serializer.setMinorRadius(minor);
    if (startAnglePt()) serializer.setStartEndAngles(startAngle(), endAngle());
    serializer.setHeight(height_());
    BaseFilledShape::serialize(serializer);
    serializer.endShape();
    return 0;
}

bool CylinderShape::isComplete() const {
    if (!hasKind_()) return true;
    if (!centerPt() || majorAxis() == 0.0) return false;
    return kind().radii != ShapeKind::Radii::Two || minorAxis() != 0.0;
}

// Numbers and points

std::optional<double> CylinderShape::kept_(EditPoint role) const {
    const auto& number = numbers_[index_(role)];
    const auto& place = editPoint(role);
    if (!number || !centerPt() || !place) return std::nullopt;
    const bool stands = role == EditPoint::Height
                            ? number->center.alt() == centerPt()->alt() && number->point.alt() == place->alt()
                            : samePlace(number->center, *centerPt()) && samePlace(number->point, *place);
    return stands ? std::optional(number->value) : std::nullopt;
}

void CylinderShape::keep_(EditPoint role, double value) {
    numbers_[index_(role)] = SetNumber{value, *centerPt(), *editPoint(role)};
}

void CylinderShape::placeAt_(EditPoint role, double azimuth, double meters, double number) {
    place_(role) = Sodano::direct(*centerPt(), azimuth, meters);
    keep_(role, number);
}

void CylinderShape::placeHeight_(double meters) {
    place_(EditPoint::Height) = Vec3(centerPt()->lat(), centerPt()->lon(), centerPt()->alt() + meters);
    keep_(EditPoint::Height, meters);
}

void CylinderShape::placeAngle_(EditPoint role, double radians) {
    placeAt_(role, radians, rimDistance_(radians), radians);
}

void CylinderShape::placeSector_() {
    // Not the end angle: from a full turn that would come back a last digit beside the start.
    const double end = number_(EditPoint::EndAngle);
    if (startAnglePt()) placeAngle_(EditPoint::StartAngle, startAngle());
    if (endAnglePt()) placeAngle_(EditPoint::EndAngle, end);
}

double CylinderShape::rimDistance_(double azimuth) const {
    const double east = majorAxis();
    const double north = minorAxis();
    if (!(east > 0.0)) return north > 0.0 ? north : kStandInRadius;
    if (!(north > 0.0)) return east;
    return 1.0 / std::hypot(std::sin(azimuth) / east, std::cos(azimuth) / north);
}

double CylinderShape::measured_(EditPoint role) const {
    const auto& place = editPoint(role);
    if (!centerPt() || !place) return 0.0;
    if (role == EditPoint::Height) return place->alt() - centerPt()->alt();
    const auto way = Sodano::inverse(*centerPt(), *place);
    const bool isAngle = role == EditPoint::StartAngle || role == EditPoint::EndAngle;
    return isAngle ? normalized(way.azimuth1) : way.distance;
}

double CylinderShape::number_(EditPoint role) const {
    const auto kept = kept_(role);
    return kept ? *kept : measured_(role);
}

double CylinderShape::majorAxis() const {
    return number_(EditPoint::MajorAxis);
}

double CylinderShape::minorAxis() const {
    return number_(EditPoint::MinorAxis);
}

double CylinderShape::height_() const {
    return subtype_ == Sphere ? majorAxis() : number_(EditPoint::Height);
}

double CylinderShape::startAngle() const {
    return number_(EditPoint::StartAngle);
}

double CylinderShape::endAngle() const {
    if (!centerPt() || !endAnglePt()) return 0.0;
    const double end = number_(EditPoint::EndAngle);
    return end == startAngle() ? end + halCore::kTwoPi : end;
}

// Setters

void CylinderShape::setCenter(const Vec3& lla) {
    const double height = height_();
    place_(EditPoint::Center) = lla;
    if (heightPt()) placeHeight_(height);
    dirty_();
}

void CylinderShape::moveCenter(const Vec3& lla) {
    if (!centerPt()) {
        setCenter(lla);
        return;
    }
    moveAll_(lla);
    dirty_();
}

void CylinderShape::moveAll_(const Vec3& lla) {
    const Vec3 from = *centerPt();
    const double height = height_();
    // Kept from here on even if they were measured until now: moving changes no number. Not the end angle, to
    // which a full turn may have been added.
    const std::array<std::pair<EditPoint, double>, 4> numbers{
        {{EditPoint::MajorAxis, majorAxis()},
         {EditPoint::MinorAxis, minorAxis()},
         {EditPoint::StartAngle, startAngle()},
         {EditPoint::EndAngle, number_(EditPoint::EndAngle)}}};
    place_(EditPoint::Center) = lla;
    for (const auto& [role, number] : numbers) {
        auto& place = place_(role);
        if (!place) continue;
        const double above = place->alt() - from.alt();
        const auto way = Sodano::inverse(from, *place);
        place = Sodano::direct(lla, way.azimuth1, way.distance);
        place->setAlt(lla.alt() + above);
        keep_(role, number);
    }
    if (heightPt()) placeHeight_(height);
}

void CylinderShape::carry(const ReferenceMove& move) {
    const auto center = centerPt() ? move(*centerPt()) : std::nullopt;
    if (center) moveAll_(*center);
    fillGui();
}

bool CylinderShape::isRadius(double meters) {
    return std::abs(meters) <= halCore::wgs84::halfMeridian;
}

void CylinderShape::setMajorRadius(double meters) {
    if (!centerPt() || !accepted(meters)) return;
    placeAt_(EditPoint::MajorAxis, kEast, std::abs(meters), std::abs(meters));
    placeSector_();
    dirty_();
}

void CylinderShape::setMinorRadius(double meters) {
    if (!centerPt() || !accepted(meters)) return;
    placeAt_(EditPoint::MinorAxis, kNorth, std::abs(meters), std::abs(meters));
    placeSector_();
    dirty_();
}

void CylinderShape::put_(EditPoint role, const Vec3& lla) {
    place_(role) = lla;
    dirty_();
}

void CylinderShape::setInnerRadius(double meters) {
    setMajorRadius(meters);
    setMinorRadius(meters);
}

void CylinderShape::setStartAngle(double radians) {
    if (!centerPt() || !std::isfinite(radians)) return;
    placeAngle_(EditPoint::StartAngle, normalized(radians));
    dirty_();
}

void CylinderShape::setEndAngle(double radians) {
    if (!centerPt() || !std::isfinite(radians)) return;
    double end = normalized(radians);
    // A full turn loses a last digit on its way here.
    const double start = startAngle();
    if (startAnglePt() && std::abs(std::remainder(end - start, halCore::kTwoPi)) < kSameAngle) end = start;
    placeAngle_(EditPoint::EndAngle, end);
    dirty_();
}

void CylinderShape::setHeight(double meters) {
    if (!centerPt() || !std::isfinite(meters)) return;
    if (subtype_ == Ellipsoid && meters <= 0.0) {
        meters = 1.0;
        if (panel_()) panel_()->setHeight(meters);
    }
    placeHeight_(meters);
    dirty_();
}

void CylinderShape::updatePoints() {
    if (!centerPt() || !hasKind_()) return;
    if (majorAxisPt()) placeAt_(EditPoint::MajorAxis, kEast, majorAxis(), majorAxis());
    if (minorAxisPt()) placeAt_(EditPoint::MinorAxis, kNorth, minorAxis(), minorAxis());
    placeSector_();
    dirty_();
}

void CylinderShape::setEditPointsShown(bool shown, bool height) {
    editPointsShown_ = shown;
    heightPointShown_ = shown && height;
}

void CylinderShape::clear() {
    places_ = {};
    hide_();
}

void CylinderShape::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    if (takeAttachment_(id, converter) && centerPt()) {
        if (converter && anchorCenter) {
            Vec3 reference;
            converter->getReferenceLla(reference);
            moveCenter(reference);
        } else {
            dirty_();
        }
    }
    fillGui();
}

// The part of the earth that the shape covers

void CylinderShape::includeRim_(const Vec3& center, double startRad, double sweepRad,
                                const std::function<double(double)>& distance,
                                std::pair<Vec3, Vec3>& bounds) {
    const auto include = [&](double azimuth) {
        Vec3 rim = Sodano::direct(center, azimuth, distance(azimuth));
        rim.setLon(center.lon() + halCore::wrapToPi(rim.lon() - center.lon()));
        updateBounds_(rim, bounds);
    };
    constexpr double step = halCore::kTwoPi / kRimSamples;
    include(startRad);
    for (double at = std::ceil(startRad / step) * step; at < startRad + sweepRad; at += step) include(at);
    include(startRad + sweepRad);
    if (sweepRad < halCore::kTwoPi) return;
    for (const double pole : {halCore::kHalfPi, -halCore::kHalfPi}) {
        const auto way = Sodano::inverse(center.lat(), center.lon(), pole, center.lon());
        if (way.distance > distance(way.azimuth1)) continue;
        updateBounds_({pole, center.lon() - halCore::kPi, center.alt()}, bounds);
        updateBounds_({pole, center.lon() + halCore::kPi, center.alt()}, bounds);
    }
}

std::pair<Vec3, Vec3> CylinderShape::boundingBox() const {
    std::pair<Vec3, Vec3> bounds;
    initBounds_(bounds);
    if (!centerPt()) return bounds;
    const Vec3 center = *centerPt();

    const bool hasSector = startAnglePt() && kind().sector == ShapeKind::Sector::Drawn;
    const double start = hasSector ? startAngle() : 0.0;
    double sweep = hasSector ? endAngle() - start : halCore::kTwoPi;
    if (sweep <= 0.0) sweep += halCore::kTwoPi;
    const double radius = std::max(majorAxis(), minorAxis());

    // An arc is only its rim unless it is filled; everything else holds its centre.
    if (subtype_ != Arc || !hasSector || filled() || radius == 0.0) updateBounds_(center, bounds);
    if (radius > 0.0)
        includeRim_(
            center, start, sweep, [this](double azimuth) { return rimDistance_(azimuth); }, bounds);

    double above = 0.0;
    if (kind().height == ShapeKind::Height::Own) above = height_();
    if (kind().height == ShapeKind::Height::Radius) above = majorAxis();
    const double below = kind().reachesBelow ? -above : 0.0;
    bounds.first.setAlt(center.alt() + std::min(above, below));
    bounds.second.setAlt(center.alt() + std::max(above, 0.0));
    return bounds;
}

// Panel

void CylinderShape::showIn_(CylinderPanel& panel) {
    if (centerPt())
        shownCenter_ = *centerPt();
    else
        Utils::getDefaultLla(shownCenter_);
    panel.setDrawCheck(shown());
    panel.setCenterLla(shownCenter_);
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
    if (center)
        moveCenter(*center);
    else if (!centerPt() && (x || y || height || start || end))
        setCenter(shownCenter_);  // the user fills in a shape about the centre that stands in the panel
    if (x) setMajorRadius(*x);
    if (y) setMinorRadius(*y);
    if (height) setHeight(*height);
    if (start) setStartAngle(*start);
    if (end) setEndAngle(*end);
    takeStyles_(panel.lineStyle(), panel.fillStyle());
}

}  // namespace OverlayEditor
