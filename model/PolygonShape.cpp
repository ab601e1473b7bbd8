#include "model/PolygonShape.h"

#include "model/LongitudeWalk.h"
#include "model/PointsTool.h"
#include "model/ReferenceMove.h"
#include "model/ShapeKinds.h"

namespace OverlayEditor {

using halCore::Vec3;

namespace {

const ShapeKind& kindOf(PolygonShape::Subtype subtype) {
    return shapeKind(subtype == PolygonShape::Line ? ShapeKind::Line : ShapeKind::Polygon);
}

}  // namespace

PolygonShape::PolygonShape(const Preferences& preferences, Subtype subtype)
    : Equipped(preferences), subtype_(subtype) {
    setName(kindOf(subtype).name);
}

PolygonShape::PolygonShape(const PolygonShape& other)
    : PointsContainer(other), Equipped(other), subtype_(other.subtype_), points_(other.points_) {}

bool PolygonShape::isComplete() const {
    return points_.size() >= (subtype_ == Line ? 2U : 3U);
}

int PolygonShape::serialize(Serializer& serializer) {
    if (!isComplete()) return 1;
    serializer.beginShape(kindOf(subtype_).written, attachedPlatformId_);
    serializer.setVisible(shown());
    for (const Vec3& point : points_) serializer.addPoint(point);
    BaseFilledShape::serialize(serializer);
    serializer.endShape();
    return 0;
}

Vec3 PolygonShape::pointAtIndex(unsigned long index) const {
    if (index < points_.size()) return points_[index];
    Vec3 reference;
    if (pointConverter_) pointConverter_->getReferenceLla(reference);
    return reference;
}

void PolygonShape::put_(unsigned long index, const Vec3& point) {
    if (index < points_.size())
        points_[index] = point;
    else
        points_.push_back(point);
}

void PolygonShape::mouseSetPointAtIndex(unsigned long index, const Vec3& point) {
    put_(index, point);
    dirty_();
    if (panel_()) panel_()->refreshPoint(index);
}

void PolygonShape::setPointAtIndex(unsigned long index, const Vec3& point) {
    mouseSetPointAtIndex(index, point);
    resetToolPoints_();
}

void PolygonShape::pointsChanged_(unsigned long index) {
    dirty_();
    resetToolPoints_();
    if (panel_()) panel_()->refreshPoint(index);
}

void PolygonShape::resetToolPoints_() {
    if (auto* const tool = dynamic_cast<PointsTool*>(mouseTool_)) tool->resetPoints_();
}

void PolygonShape::insertPointAtIndex(unsigned long index, const Vec3& point) {
    if (index < points_.size())
        points_.insert(points_.begin() + static_cast<std::ptrdiff_t>(index), point);
    else
        points_.push_back(point);
    pointsChanged_(index);
}

void PolygonShape::deletePointAtIndex(unsigned long index) {
    if (index < points_.size()) points_.erase(points_.begin() + static_cast<std::ptrdiff_t>(index));
    pointsChanged_(index);
}

void PolygonShape::clear() {
    points_.clear();
    hide_();
    resetToolPoints_();
    fillGui();
}

std::pair<Vec3, Vec3> PolygonShape::boundingBox() const {
    std::pair<Vec3, Vec3> bounds;
    initBounds_(bounds);
    LongitudeWalk walk;
    for (const Vec3& point : points_)
        updateBounds_({point.lat(), walk.next(point.lon()), point.alt()}, bounds);
    return bounds;
}

void PolygonShape::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    if (takeAttachment_(id, converter) && !points_.empty()) {
        if (converter) convertAbsolutePoints_(*converter, anchorCenter);
        dirty_();
        resetToolPoints_();
    }
    fillGui();
}

void PolygonShape::convertAbsolutePoints_(const PointConverter& target, bool anchorCenter) {
    // About the target's own reference every point stays where it is.
    if (!anchorCenter) return;
    moveAll_(ReferenceMove(centerPoint(), target));
}

void PolygonShape::moveAll_(const ReferenceMove& move) {
    std::vector<Vec3> moved;
    moved.reserve(points_.size());
    for (const Vec3& point : points_) {
        const auto there = move(point);
        if (!there) return;
        moved.push_back(*there);
    }
    points_ = std::move(moved);
}

void PolygonShape::carry(const ReferenceMove& move) {
    moveAll_(move);
    if (auto* const tool = dynamic_cast<PointsTool*>(mouseTool_)) tool->carryPoints_();
    fillGui();
}

void PolygonShape::showIn_(PolygonPanel& panel) {
    panel.setDrawCheck(shown());
    panel.setShape(*this);
    showStyles_(panel.lineStyle(), panel.fillStyle());
}

void PolygonShape::takeFrom_(PolygonPanel& panel) {
    const bool drawn = panel.drawCheck();
    if (drawn != shown()) setShown(drawn);
    takeStyles_(panel.lineStyle(), panel.fillStyle());
}

}  // namespace OverlayEditor
