#include "model/OrbitShape.h"

#include <algorithm>
#include <cmath>

#include "geo/Angles.h"
#include "geo/Sodano.h"
#include "model/ReferenceMove.h"
#include "model/ShapeKinds.h"
#include "model/Utils.h"

namespace OverlayEditor {

using halCore::Vec3;

OrbitShape::OrbitShape(const Preferences& preferences) : Equipped(preferences, NoSubtype) {
    setName(shapeKind(ShapeKind::Orbit).name);
}

OrbitShape::OrbitShape(const OrbitShape& other) : Equipped(other) {}

bool OrbitShape::isComplete() const {
    return centerPt() && centerPt2();
}

int OrbitShape::serialize(Serializer& serializer) {
    if (!isComplete()) return 1;
    serializer.beginShape(shapeKind(ShapeKind::Orbit).written, attachedPlatformId_);
    serializer.addPoint(*centerPt());
    serializer.setCenterPoint2(*centerPt2());
    serializer.setMajorRadius(minorAxisPt() ? minorAxis() : kDefaultRadius);
    BaseFilledShape::serialize(serializer);
    serializer.endShape();
    return 0;
}

double OrbitShape::getShortestDistance_(const Vec3& position) const {
    if (!isComplete()) return 0.0;
    return std::min(halCore::Sodano::inverse(*centerPt(), position).distance,
                    halCore::Sodano::inverse(*centerPt2(), position).distance);
}

double OrbitShape::minorAxis() const {
    if (!minorAxisPt()) return 0.0;
    const auto kept = kept_(EditPoint::MinorAxis);
    return kept ? *kept : getShortestDistance_(*minorAxisPt());
}

void OrbitShape::setMinorRadius(const Vec3& lla) {
    if (!isComplete()) return;
    const double radius = getShortestDistance_(lla);
    setMinorRadius(radius);
    if (!minorAxisPt()) return;
    place_(EditPoint::MinorAxis) = lla;
    keep_(EditPoint::MinorAxis, radius);
    dirty_();
}

bool OrbitShape::radiusAtSecond_() const {
    if (!isComplete() || !minorAxisPt()) return false;
    const double radius = minorAxis();
    const auto beside = [&](const Vec3& center) {
        return std::abs(halCore::Sodano::inverse(center, *minorAxisPt()).distance - radius);
    };
    return beside(*centerPt2()) < beside(*centerPt());
}

void OrbitShape::carryRadiusPoint_(const Vec3& from, const Vec3& to) {
    const auto way = halCore::Sodano::inverse(from, *minorAxisPt());
    place_(EditPoint::MinorAxis) = halCore::Sodano::direct(to, way.azimuth1, way.distance);
}

void OrbitShape::moveFirstCenter(const Vec3& lla) {
    if (!centerPt() || !minorAxisPt()) {
        setCenter(lla);
        return;
    }
    const double radius = minorAxis();
    if (!radiusAtSecond_()) carryRadiusPoint_(*centerPt(), lla);
    place_(EditPoint::Center) = lla;
    keep_(EditPoint::MinorAxis, radius);
    dirty_();
}

void OrbitShape::setCenter2(const Vec3& lla) {
    if (isComplete() && minorAxisPt()) {
        const double radius = minorAxis();
        if (radiusAtSecond_()) carryRadiusPoint_(*centerPt2(), lla);
        keep_(EditPoint::MinorAxis, radius);
    }
    CylinderShape::setMajorRadius(lla);
}

void OrbitShape::setAltitude(double meters) {
    bool lifted = false;
    for (const EditPoint role : {EditPoint::Center, EditPoint::MajorAxis, EditPoint::MinorAxis}) {
        auto& place = place_(role);
        if (!place || place->alt() == meters) continue;
        place->setAlt(meters);
        lifted = true;
    }
    if (lifted) dirty_();
}

void OrbitShape::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    if (!takeAttachment_(id, converter)) {
        fillGui();
        return;
    }
    if (isComplete() && converter && anchorCenter) {
        const Vec3 from = *centerPt();
        const Vec3 to = *centerPt2();
        const Vec3 middle(0.5 * (from.lat() + to.lat()),
                          from.lon() + 0.5 * halCore::wrapToPi(to.lon() - from.lon()),
                          0.5 * (from.alt() + to.alt()));
        const ReferenceMove move(middle, *converter);
        const auto first = move(from);
        const auto second = move(to);
        if (first && second) {
            moveCenter(*first);
            setCenter2(*second);
            fillGui();
            return;
        }
    }
    dirty_();
    fillGui();
}

void OrbitShape::carry(const ReferenceMove& move) {
    const auto second = centerPt2() ? move(*centerPt2()) : std::nullopt;
    if (centerPt2() && !second) return;
    const bool radiusAtSecond = radiusAtSecond_();
    const double radius = minorAxis();
    const Vec3 from = centerPt2().value_or(Vec3());
    const auto radiusPoint = minorAxisPt();
    CylinderShape::carry(move);
    if (!second) return;
    place_(EditPoint::MajorAxis) = *second;
    if (radiusAtSecond) {
        place_(EditPoint::MinorAxis) = radiusPoint;
        carryRadiusPoint_(from, *second);
        keep_(EditPoint::MinorAxis, radius);
    }
    fillGui();
}

std::pair<Vec3, Vec3> OrbitShape::boundingBox() const {
    std::pair<Vec3, Vec3> bounds;
    initBounds_(bounds);
    if (!isComplete()) return CylinderShape::boundingBox();
    const double radius = minorAxisPt() ? minorAxis() : kDefaultRadius;
    const Vec3 first = *centerPt();
    Vec3 second = *centerPt2();
    second.setLon(first.lon() + halCore::wrapToPi(second.lon() - first.lon()));
    for (const Vec3& center : {first, second})
        includeRim_(
            center, 0.0, halCore::kTwoPi, [radius](double) { return radius; }, bounds);
    return bounds;
}

void OrbitShape::showIn_(OrbitPanel& panel) {
    Vec3 ground;
    if (!isComplete()) Utils::getDefaultLla(ground);
    shownCenter_ = centerPt().value_or(ground);
    panel.setDrawCheck(shown());
    panel.setCenterLla(shownCenter_);
    panel.setCenterLla2(centerPt2().value_or(ground));
    panel.setRadius(minorAxis());
    showStyles_(panel.lineStyle(), panel.fillStyle());
}

void OrbitShape::takeFrom_(OrbitPanel& panel) {
    const auto first = panel.centerLla();
    const auto second = panel.centerLla2();
    const auto radius = panel.radius();
    const bool drawn = panel.drawCheck();

    if (drawn != shown()) setShown(drawn);
    if (first) moveFirstCenter(*first);
    if (second) setCenter2(*second);
    // The radius is marked from the first centre: the one that stands in the panel, if need be.
    if (radius && !centerPt()) setCenter(shownCenter_);
    if (radius) setMinorRadius(*radius);
    takeStyles_(panel.lineStyle(), panel.fillStyle());
}

}  // namespace OverlayEditor
