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
using PluginUtils::PUDrawPoint;

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

std::unique_ptr<PUDrawPoint> copyOf(const std::unique_ptr<PUDrawPoint>& point) {
    return point ? std::make_unique<PUDrawPoint>(*point) : nullptr;
}

bool accepted(double meters) {
    if (CylinderShape::isRadius(meters)) return true;
    if (halNotify::isNotifyEnabled(halNotify::Warning))
        halNotify::notify(halNotify::Warning)
            << "A radius of " << meters << " m is refused: it reaches round more than half of the earth";
    return false;
}

bool samePlace(const halCore::Vec3& a, const halCore::Vec3& b) {
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
      center_(copyOf(other.center_)),
      majorAxisPoint_(copyOf(other.majorAxisPoint_)),
      minorAxisPoint_(copyOf(other.minorAxisPoint_)),
      startAnglePoint_(copyOf(other.startAnglePoint_)),
      endAnglePoint_(copyOf(other.endAnglePoint_)),
      heightPoint_(copyOf(other.heightPoint_)),
      majorRadius_(other.majorRadius_),
      minorRadius_(other.minorRadius_),
      startAngle_(other.startAngle_),
      endAngle_(other.endAngle_),
      heightNumber_(other.heightNumber_),
      requiresAllPoints_(other.requiresAllPoints_) {}

int CylinderShape::serialize(Serializer& serializer) {
    if (!hasKind_() || !center_) return 1;
    if (requiresAllPoints_ && !isComplete()) return 1;
    serializer.beginShape(kind().written, attachedPlatformId_);
    serializer.addPoint(center_->getPosition());
    if (const double major = majorAxis(); major != 0.0) serializer.setMajorRadius(major);
    if (const double minor = minorAxis(); minor != 0.0) serializer.setMinorRadius(minor);
    if (startAnglePoint_) serializer.setStartEndAngles(startAngle(), endAngle());
    serializer.setHeight(height_());
    BaseFilledShape::serialize(serializer);
    serializer.endShape();
    return 0;
}

bool CylinderShape::isComplete() const {
    if (!hasKind_()) return true;
    if (!center_ || majorAxis() == 0.0) return false;
    return kind().radii != ShapeKind::Radii::Two || minorAxis() != 0.0;
}

// Numbers and points

std::optional<double> CylinderShape::kept_(const Number& number, const PointPtr& point) const {
    if (!number || !center_ || !point || !samePlace(number->center, center_->getPosition()) ||
        !samePlace(number->point, point->getPosition()))
        return std::nullopt;
    return number->value;
}

std::optional<double> CylinderShape::keptHeight_() const {
    if (!heightNumber_ || !center_ || !heightPoint_ ||
        heightNumber_->center.alt() != center_->getAltitude() ||
        heightNumber_->point.alt() != heightPoint_->getAltitude())
        return std::nullopt;
    return heightNumber_->value;
}

void CylinderShape::keep_(Number& number, double value, const PointPtr& point) {
    number = SetNumber{value, center_->getPosition(), point->getPosition()};
}

void CylinderShape::place_(PointPtr& point, const halCore::Vec3& lla) {
    if (point)
        point->setPosition(lla);
    else
        point = std::make_unique<PUDrawPoint>(lla, PluginUtils::kEditPointColor);
}

void CylinderShape::placeAt_(PointPtr& point, double azimuth, double meters) {
    place_(point, Sodano::direct(center_->getPosition(), azimuth, meters));
}

void CylinderShape::placeHeight_(double meters) {
    const bool isNew = !heightPoint_;
    halCore::Vec3 top = center_->getPosition();
    top.setAlt(top.alt() + meters);
    place_(heightPoint_, top);
    if (isNew) {
        heightPoint_->setEnableDepthBuffer(false);
        heightPoint_->hide();
    }
    keep_(heightNumber_, meters, heightPoint_);
}

void CylinderShape::placeAngle_(PointPtr& point, Number& number, double radians) {
    placeAt_(point, radians, rimDistance_(radians));
    keep_(number, radians, point);
}

void CylinderShape::placeSector_() {
    const double start = startAngle();
    // Not the end angle: from a full turn that would come back a last digit beside the start.
    const double end = kept_(endAngle_, endAnglePoint_).value_or(azimuthTo_(endAnglePoint_));
    if (startAnglePoint_) placeAngle_(startAnglePoint_, startAngle_, start);
    if (endAnglePoint_) placeAngle_(endAnglePoint_, endAngle_, end);
}

double CylinderShape::rimDistance_(double azimuth) const {
    const double east = majorAxis();
    const double north = minorAxis();
    if (!(east > 0.0)) return north > 0.0 ? north : kStandInRadius;
    if (!(north > 0.0)) return east;
    return 1.0 / std::hypot(std::sin(azimuth) / east, std::cos(azimuth) / north);
}

double CylinderShape::distanceTo_(const PointPtr& point) const {
    return center_ && point ? Sodano::inverse(center_->getPosition(), point->getPosition()).distance : 0.0;
}

double CylinderShape::azimuthTo_(const PointPtr& point) const {
    if (!center_ || !point) return 0.0;
    return normalized(Sodano::inverse(center_->getPosition(), point->getPosition()).azimuth1);
}

double CylinderShape::majorAxis() const {
    const auto kept = kept_(majorRadius_, majorAxisPoint_);
    return kept ? *kept : distanceTo_(majorAxisPoint_);
}

double CylinderShape::minorAxis() const {
    const auto kept = keptMinorRadius_();
    return kept ? *kept : distanceTo_(minorAxisPoint_);
}

double CylinderShape::height_() const {
    if (subtype_ == Sphere) return majorAxis();
    if (!center_ || !heightPoint_) return 0.0;
    const auto kept = keptHeight_();
    return kept ? *kept : heightPoint_->getAltitude() - center_->getAltitude();
}

double CylinderShape::startAngle() const {
    const auto kept = kept_(startAngle_, startAnglePoint_);
    return kept ? *kept : azimuthTo_(startAnglePoint_);
}

double CylinderShape::endAngle() const {
    if (!center_ || !endAnglePoint_) return 0.0;
    const auto kept = kept_(endAngle_, endAnglePoint_);
    const double end = kept ? *kept : azimuthTo_(endAnglePoint_);
    return end == startAngle() ? end + halCore::kTwoPi : end;
}

// Setters

void CylinderShape::setCenter(const halCore::Vec3& lla) {
    const double height = height_();
    place_(center_, lla);
    if (heightPoint_) placeHeight_(height);
    dirty_();
}

void CylinderShape::moveCenter(const halCore::Vec3& lla) {
    if (!center_) {
        setCenter(lla);
        return;
    }
    moveAll_(lla);
    dirty_();
}

void CylinderShape::moveAll_(const halCore::Vec3& lla) {
    const halCore::Vec3 from = center_->getPosition();
    const double height = height_();
    struct Moving {
        PointPtr& point;
        Number& number;
        std::optional<double> kept;
    };
    const std::array<Moving, 4> moving{{{majorAxisPoint_, majorRadius_, kept_(majorRadius_, majorAxisPoint_)},
                                        {minorAxisPoint_, minorRadius_, kept_(minorRadius_, minorAxisPoint_)},
                                        {startAnglePoint_, startAngle_, kept_(startAngle_, startAnglePoint_)},
                                        {endAnglePoint_, endAngle_, kept_(endAngle_, endAnglePoint_)}}};
    // A point's number is kept from here on even if it was measured until now: moving changes no number.
    const std::array<double, 4> numbers{majorAxis(), minorAxis(), startAngle(), azimuthTo_(endAnglePoint_)};
    center_->setPosition(lla);
    for (std::size_t i = 0; i < moving.size(); ++i) {
        const auto& [point, number, kept] = moving[i];
        if (!point) continue;
        const halCore::Vec3 old = point->getPosition();
        const auto way = Sodano::inverse(from, old);
        halCore::Vec3 moved = Sodano::direct(lla, way.azimuth1, way.distance);
        moved.setAlt(old.alt() + (lla.alt() - from.alt()));
        point->setPosition(moved);
        keep_(number, kept.value_or(numbers[i]), point);
    }
    if (heightPoint_) placeHeight_(height);
}

void CylinderShape::carry(const ReferenceMove& move) {
    const auto center = center_ ? move(center_->getPosition()) : std::nullopt;
    if (center) moveAll_(*center);
    fillGui();
}

bool CylinderShape::isRadius(double meters) {
    return std::abs(meters) <= halCore::wgs84::halfMeridian;
}

void CylinderShape::setMajorRadius(double meters) {
    if (!center_ || !accepted(meters)) return;
    meters = std::abs(meters);
    placeAt_(majorAxisPoint_, kEast, meters);
    keep_(majorRadius_, meters, majorAxisPoint_);
    placeSector_();
    dirty_();
}

void CylinderShape::setMinorRadius(double meters) {
    if (!center_ || !accepted(meters)) return;
    meters = std::abs(meters);
    placeAt_(minorAxisPoint_, kNorth, meters);
    keep_(minorRadius_, meters, minorAxisPoint_);
    placeSector_();
    dirty_();
}

void CylinderShape::setMajorRadius(const halCore::Vec3& lla) {
    place_(majorAxisPoint_, lla);
    dirty_();
}

void CylinderShape::setMinorRadius(const halCore::Vec3& lla) {
    place_(minorAxisPoint_, lla);
    dirty_();
}

void CylinderShape::setInnerRadius(double meters) {
    const Survival survives(*this);
    setMajorRadius(meters);
    if (survives) setMinorRadius(meters);
}

void CylinderShape::setStartAngle(double radians) {
    if (!center_ || !std::isfinite(radians)) return;
    placeAngle_(startAnglePoint_, startAngle_, normalized(radians));
    dirty_();
}

void CylinderShape::setEndAngle(double radians) {
    if (!center_ || !std::isfinite(radians)) return;
    double end = normalized(radians);
    // A full turn loses a last digit on its way here.
    const double start = startAngle();
    if (startAnglePoint_ && std::abs(std::remainder(end - start, halCore::kTwoPi)) < kSameAngle) end = start;
    placeAngle_(endAnglePoint_, endAngle_, end);
    dirty_();
}

void CylinderShape::setStartAnglePt(const halCore::Vec3& lla) {
    place_(startAnglePoint_, lla);
    dirty_();
}

void CylinderShape::setEndAnglePt(const halCore::Vec3& lla) {
    place_(endAnglePoint_, lla);
    dirty_();
}

void CylinderShape::setHeight(double meters) {
    if (!center_ || !std::isfinite(meters)) return;
    if (subtype_ == Ellipsoid && meters <= 0.0) {
        meters = 1.0;
        const Survival survives(*this);
        if (panel_()) panel_()->setHeight(meters);
        if (!survives) return;
    }
    placeHeight_(meters);
    dirty_();
}

void CylinderShape::updatePoints() {
    if (!center_ || !hasKind_()) return;
    if (majorAxisPoint_) {
        const double radius = majorAxis();
        placeAt_(majorAxisPoint_, kEast, radius);
        keep_(majorRadius_, radius, majorAxisPoint_);
    }
    if (minorAxisPoint_) {
        const double radius = minorAxis();
        placeAt_(minorAxisPoint_, kNorth, radius);
        keep_(minorRadius_, radius, minorAxisPoint_);
    }
    placeSector_();
    dirty_();
}

void CylinderShape::setEditPointsShown(bool shown, bool height) {
    for (const PointPtr* point :
         {&center_, &majorAxisPoint_, &minorAxisPoint_, &startAnglePoint_, &endAnglePoint_, &heightPoint_}) {
        if (!*point) continue;
        if (shown && (height || point != &heightPoint_))
            (*point)->show();
        else
            (*point)->hide();
    }
}

void CylinderShape::clear() {
    for (PointPtr* point :
         {&center_, &majorAxisPoint_, &minorAxisPoint_, &startAnglePoint_, &endAnglePoint_, &heightPoint_})
        point->reset();
    hide_();
}

void CylinderShape::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    const Survival survives(*this);
    if (takeAttachment_(id, converter) && center_) {
        if (converter && anchorCenter) {
            halCore::Vec3 reference;
            converter->getReferenceLla(reference);
            moveCenter(reference);
        } else {
            dirty_();
        }
    }
    if (survives) fillGui();
}

// The part of the earth that the shape covers

void CylinderShape::includeRim_(const halCore::Vec3& center, double startRad, double sweepRad,
                                const std::function<double(double)>& distance,
                                std::pair<halCore::Vec3, halCore::Vec3>& bounds) {
    const auto include = [&](double azimuth) {
        halCore::Vec3 rim = Sodano::direct(center, azimuth, distance(azimuth));
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

std::pair<halCore::Vec3, halCore::Vec3> CylinderShape::boundingBox() const {
    std::pair<halCore::Vec3, halCore::Vec3> bounds;
    initBounds_(bounds);
    if (!center_) return bounds;
    const halCore::Vec3 center = center_->getPosition();

    const bool hasSector = startAnglePoint_ && kind().sector == ShapeKind::Sector::Drawn;
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
    if (center_)
        shownCenter_ = center_->getPosition();
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

    const Survival survives(*this);
    if (drawn != shown()) setShown(drawn);
    if (survives && center)
        moveCenter(*center);
    else if (survives && !center_ && (x || y || height || start || end))
        setCenter(shownCenter_);  // the user fills in a shape about the centre that stands in the panel
    if (survives && x) setMajorRadius(*x);
    if (survives && y) setMinorRadius(*y);
    if (survives && height) setHeight(*height);
    if (survives && start) setStartAngle(*start);
    if (survives && end) setEndAngle(*end);
    if (!survives || !panel_()) return;
    takeStyles_(panel.lineStyle(), panel.fillStyle());
}

}  // namespace OverlayEditor
