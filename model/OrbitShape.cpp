#include "model/OrbitShape.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "geo/Angles.h"
#include "geo/Sodano.h"
#include "model/ShapeKinds.h"

namespace OverlayEditor {

using halCore::Vec3;

OrbitShape::OrbitShape(const Preferences& preferences) : Equipped(preferences, NoSubtype) {
    setName(shapeKind(ShapeKind::Orbit).name);
}

OrbitShape::OrbitShape(const OrbitShape& other) : Equipped(other) {}

bool OrbitShape::isComplete() const {
    return hasCenter_() && points_.has(Second);
}

int OrbitShape::serialize(Serializer& serializer) {
    if (!isComplete()) return 1;
    serializer.beginShape(shapeKind(ShapeKind::Orbit).written, writtenPlatform_());
    give_(serializer, Serializer::Use::Point, points_.given()[First]);
    give_(serializer, Serializer::Use::Center2, points_.given()[Second]);
    serializer.setMajorRadius(drawnRadius_());
    BaseFilledShape::serialize(serializer);
    serializer.endShape();
    return 0;
}

double OrbitShape::getShortestDistance_(const Vec3& position) const {
    sync_();
    return shortestDistance_(position);
}

double OrbitShape::shortestDistance_(const Vec3& position) const {
    const auto first = known_(EditPoint::Center);
    const auto second = known_(EditPoint::MajorAxis);
    if (!first || !second) return 0.0;
    return std::min(halCore::Sodano::inverse(*first, position).distance,
                    halCore::Sodano::inverse(*second, position).distance);
}

double OrbitShape::measured_(EditPoint role) const {
    if (role != EditPoint::MinorAxis) return CylinderShape::measured_(role);
    return known_(role) ? shortestDistance_(*known_(role)) : 0.0;
}

double OrbitShape::minorAxis() const {
    return hasPoint_(EditPoint::MinorAxis) ? number_(EditPoint::MinorAxis) : 0.0;
}

double OrbitShape::drawnRadius_() const {
    return hasPoint_(EditPoint::MinorAxis) ? minorAxis() : kDefaultRadius;
}

void OrbitShape::setMinorRadius(const Vec3& lla) {
    if (!centerPt() || !centerPt2()) return;
    const double radius = getShortestDistance_(lla);
    setMinorRadius(radius);
    if (!minorAxisPt()) return;
    place_(EditPoint::MinorAxis, lla);
    keep_(EditPoint::MinorAxis, radius);
    dirty_();
}

CylinderShape::Position OrbitShape::anchorOf_(EditPoint role) const {
    const auto first = known_(EditPoint::Center);
    const auto second = known_(EditPoint::MajorAxis);
    const auto point = known_(role);
    if (role != EditPoint::MinorAxis || !first || !second || !point) return First;
    const double radius = number_(role);
    const auto beside = [&](const Vec3& center) {
        return std::abs(halCore::Sodano::inverse(center, *point).distance - radius);
    };
    return beside(*second) < beside(*first) ? Second : First;
}

void OrbitShape::moveFirstCenter(const PlacedPoint& point) {
    if (putCenter_(First, point, EditPoint::MinorAxis)) dirty_();
}

void OrbitShape::setCenter2(const PlacedPoint& point) {
    if (putCenter_(Second, point, EditPoint::MinorAxis)) dirty_();
}

void OrbitShape::carryCenters(PlacedPoints centers, double turnRad) {
    sync_();
    turnMark_(EditPoint::MinorAxis, turnRad);
    points_ = std::move(centers);
    sync_();
    dirty_();
}

void OrbitShape::setAltitude(double meters) {
    sync_();
    bool lifted = false;
    for (const Position position : {First, Second}) {
        if (!points_.has(position) || !isPlace(points_.place(position))) continue;
        Vec3 place = points_.place(position);
        if (place.alt() == meters) continue;
        place.setAlt(meters);
        lifted = putPlaced_(position, PlacedPoint(place)) || lifted;
    }
    // The radius' point goes along.
    sync_();
    lifted = liftMark_(EditPoint::MinorAxis, meters) || lifted;
    if (lifted) dirty_();
}

Vec3 OrbitShape::anchorPlace() const {
    if (!centerPt() || !centerPt2()) return CylinderShape::anchorPlace();
    const Vec3 from = *centerPt();
    const Vec3 to = *centerPt2();
    return {0.5 * (from.lat() + to.lat()), from.lon() + 0.5 * halCore::wrapToPi(to.lon() - from.lon()),
            0.5 * (from.alt() + to.alt())};
}

std::pair<Vec3, Vec3> OrbitShape::boundingBox() const {
    std::pair<Vec3, Vec3> bounds;
    initBounds_(bounds);
    if (!centerPt() || !centerPt2()) return CylinderShape::boundingBox();
    const double radius = drawnRadius_();
    const Vec3 first = *centerPt();
    Vec3 second = *centerPt2();
    second.setLon(first.lon() + halCore::wrapToPi(second.lon() - first.lon()));
    for (const Vec3& center : {first, second})
        includeSector_({.center = center, .distance = [radius](double) { return radius; }}, bounds);
    return bounds;
}

void OrbitShape::showIn_(OrbitPanel& panel) {
    const PlacedPoint ground = isComplete() ? PlacedPoint(Vec3()) : start_();
    shownCenter_ = hasCenter_() ? points_.at(First) : ground;
    panel.setDrawCheck(shown());
    panel.setCenterLla(shownCenter_);
    shownSecond_ = points_.has(Second) ? points_.at(Second) : ground;
    panel.setCenterLla2(shownSecond_);
    panel.setRadius(drawnRadius_());
    showStyles_(panel.lineStyle(), panel.fillStyle());
}

void OrbitShape::takeFrom_(OrbitPanel& panel) {
    const auto first = panel.centerLla();
    const auto second = panel.centerLla2();
    const auto radius = panel.radius();
    const bool drawn = panel.drawCheck();

    if (drawn != shown()) setShown(drawn);
    const bool places = second && (points_.has(Second) || panel.placesCenter2());
    if (first && (hasCenter_() || panel.placesCenter())) moveFirstCenter(*first);
    if (places) setCenter2(*second);
    if (first && !hasCenter_()) setAltitudeAhead(first->place.alt());
    if (second && !points_.has(Second)) setAltitudeAhead(second->place.alt());
    // The user fills the panel from the top: what is above counts as it stands there.
    if ((places || radius) && !hasCenter_()) setCenter(first.value_or(shownCenter_));
    if (radius && !points_.has(Second)) setCenter2(second.value_or(shownSecond_));
    if (radius) setMinorRadius(*radius);
    takeStyles_(panel.lineStyle(), panel.fillStyle());
}

}  // namespace OverlayEditor
