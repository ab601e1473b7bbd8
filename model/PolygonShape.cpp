#include "model/PolygonShape.h"

#include <algorithm>
#include <utility>

#include "model/LongitudeWalk.h"
#include "model/PointsTool.h"
#include "model/ShapeKinds.h"
#include "model/ShapeState.h"

namespace OverlayEditor {

using halCore::Vec3;

namespace {

ShapeKind::Id idOf(PolygonShape::Subtype subtype) {
    return subtype == PolygonShape::Line ? ShapeKind::Line : ShapeKind::Polygon;
}

const ShapeKind& kindOf(PolygonShape::Subtype subtype) {
    return shapeKind(idOf(subtype));
}

}  // namespace

PolygonShape::PolygonShape(const Preferences& preferences, Subtype subtype)
    : Equipped(preferences), subtype_(subtype) {
    setName(kindOf(subtype).name);
}

PolygonShape::PolygonShape(const PolygonShape& other)
    : PointsContainer(other), Equipped(other), subtype_(other.subtype_) {}

bool PolygonShape::isComplete() const {
    return points_.size() >= (subtype_ == Line ? 2U : 3U);
}

int PolygonShape::serialize(Serializer& serializer) {
    if (!isComplete()) return 1;
    serializer.beginShape(kindOf(subtype_).written, writtenPlatform_());
    serializer.setVisible(shown());
    givePoints_(serializer);
    BaseFilledShape::serialize(serializer);
    serializer.endShape();
    return 0;
}

Vec3 PolygonShape::pointAtIndex(unsigned long index) const {
    if (index < points_.size()) return points_.place(index);
    Vec3 reference;
    const PointConverter* const frame = points_.frame() ? points_.frame() : pointConverter_;
    if (frame) frame->getReferenceLla(reference);
    return reference;
}

void PolygonShape::putPoint_(unsigned long index, const PlacedPoint& point) {
    putPlaced_(std::min<std::size_t>(index, points_.size()), point);
    dirty_();
    if (panel_()) panel_()->refreshPoint(index);
}

void PolygonShape::addPoints(std::vector<Vec3> places) {
    if (points_.frame()) {
        for (const Vec3& place : places) addPoint(place);
        return;
    }
    points_.append(std::move(places));
    changed_();
}

void PolygonShape::mouseSetPointAtIndex(unsigned long index, const Vec3& point) {
    putPoint_(index, PlacedPoint(point));
}

void PolygonShape::mouseSetPoints(PlacedPoints points) {
    points_ = std::move(points);
    dirty_();
    if (panel_()) panel_()->refreshPoint(shownPoint());
}

void PolygonShape::setPlacedPointAtIndex(unsigned long index, const PlacedPoint& point) {
    putPoint_(index, point);
    resetToolPoints_();
}

void PolygonShape::replacePointAtIndex(unsigned long index, std::span<const PlacedPoint> points) {
    const std::size_t at = std::min<std::size_t>(index, points_.size());
    PlacedPoints replaced = points_;
    bool taken = replaced.put(at, points.front());
    for (std::size_t i = 1; i < points.size() && taken; ++i) taken = replaced.insert(at + i, points[i]);
    if (accepted_(taken)) points_ = std::move(replaced);
    pointsChanged_(at + points.size() - 1);
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
    accepted_(points_.insert(index, PlacedPoint(point)));
    pointsChanged_(index);
}

void PolygonShape::deletePointAtIndex(unsigned long index) {
    if (index < points_.size()) points_.erase(index);
    pointsChanged_(index);
}

void PolygonShape::clear() {
    points_.clear();
    hide_();
    changed_();
    resetToolPoints_();
    fillGui();
}

std::pair<Vec3, Vec3> PolygonShape::boundingBox() const {
    std::pair<Vec3, Vec3> bounds;
    initBounds_(bounds);
    LongitudeWalk walk;
    for (const Vec3& point : points())
        if (isPlace(point)) updateBounds_({point.lat(), walk.next(point.lon()), point.alt()}, bounds);
    return bounds;
}

void PolygonShape::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    if (takeAttachment_(id, converter, anchorCenter) && points_.size() != 0) {
        dirty_();
        resetToolPoints_();
    }
    fillGui();
}

void PolygonShape::saveState_(ShapeState& state, const ShapeState* like) const {
    BaseFilledShape::saveState_(state, like);
    state.kind = idOf(subtype_);
}

void PolygonShape::takeState_(const ShapeState& state) {
    BaseFilledShape::takeState_(state);
    resetToolPoints_();
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
