#include "model/OrbitShape.h"

#include <algorithm>

#include "geo/Angles.h"
#include "geo/Sodano.h"
#include "model/ReferenceMove.h"

namespace OverlayEditor {

using halCore::Vec3;

OrbitShape::OrbitShape(const Preferences& preferences) : CylinderShape(preferences, NoSubtype) {
    setName("Orbit");
    mouseTool_ = (ownTool_ = ShapeEquipment::toolFor(preferences_, *this)).get();
}

OrbitShape::OrbitShape(const OrbitShape& other) : CylinderShape(other) {
    mouseTool_ = (ownTool_ = ShapeEquipment::toolFor(preferences_, *this)).get();
}

OrbitShape::~OrbitShape() {
    mouseTool_ = nullptr;
}

Shape* OrbitShape::clone() const {
    return new OrbitShape(*this);
}

bool OrbitShape::isComplete() const {
    return centerPt() && centerPt2();
}

int OrbitShape::serialize(Serializer& serializer) {
    if (!isComplete()) return 1;
    serializer.beginShape(Serializer::Orbit, attachedPlatformId_);
    serializer.addPoint(centerPt()->getPosition());
    serializer.setCenterPoint2(centerPt2()->getPosition());
    serializer.setMajorRadius(minorAxisPt() ? minorAxis() : kDefaultRadius);
    BaseFilledShape::serialize(serializer);
    serializer.endShape();
    return 0;
}

double OrbitShape::getShortestDistance_(const Vec3& position) const {
    if (!isComplete()) return 0.0;
    return std::min(halCore::Sodano::inverse(centerPt()->getPosition(), position).distance,
                    halCore::Sodano::inverse(centerPt2()->getPosition(), position).distance);
}

double OrbitShape::minorAxis() const {
    if (!minorAxisPt()) return 0.0;
    const auto kept = keptMinorRadius_();
    return kept ? *kept : getShortestDistance_(minorAxisPt()->getPosition());
}

void OrbitShape::setMinorRadius(const Vec3& lla) {
    if (!isComplete()) return;
    const double radius = getShortestDistance_(lla);
    const Survival survives(*this);
    setMinorRadius(radius);
    if (!survives || !minorAxisPt()) return;
    minorAxisPt()->setPosition(lla);
    keepMinorRadius_(radius);
    dirty_();
}

void OrbitShape::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    const Survival survives(*this);
    if (!takeAttachment_(id, converter)) {
        if (survives) fillGui();
        return;
    }
    if (isComplete() && converter && anchorCenter) {
        const Vec3 from = centerPt()->getPosition();
        const Vec3 to = centerPt2()->getPosition();
        const Vec3 middle(0.5 * (from.lat() + to.lat()),
                          from.lon() + 0.5 * halCore::wrapToPi(to.lon() - from.lon()),
                          0.5 * (from.alt() + to.alt()));
        const ReferenceMove move(middle, *converter);
        const auto first = move(from);
        const auto second = move(to);
        if (first && second) {
            moveCenter(*first);
            if (survives) setCenter2(*second);
            if (survives) fillGui();
            return;
        }
    }
    dirty_();
    if (survives) fillGui();
}

std::pair<Vec3, Vec3> OrbitShape::boundingBox() const {
    std::pair<Vec3, Vec3> bounds;
    initBounds_(bounds);
    if (!isComplete()) return CylinderShape::boundingBox();
    const double radius = minorAxisPt() ? minorAxis() : kDefaultRadius;
    const Vec3 first = centerPt()->getPosition();
    Vec3 second = centerPt2()->getPosition();
    second.setLon(first.lon() + halCore::wrapToPi(second.lon() - first.lon()));
    for (const Vec3& center : {first, second})
        includeRim_(
            center, 0.0, halCore::kTwoPi, [radius](double) { return radius; }, bounds);
    return bounds;
}

void OrbitShape::createGui(Preferences*, PIGUI::PICanvas*) {}
void OrbitShape::notifyPrefsUpdate() {}
void OrbitShape::fillGui() {}
void OrbitShape::deleteGui() {}

}  // namespace OverlayEditor
