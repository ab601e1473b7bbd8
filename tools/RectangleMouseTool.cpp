#include "tools/RectangleMouseTool.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "geo/PathMeasure.h"
#include "pi/Guard.h"

namespace OverlayEditor {

using halCore::Vec3;

RectangleMouseTool::RectangleMouseTool(const Preferences& preferences, RectangleShape& shape)
    : HandleMouseTool(preferences, shape, {First, Last, Anchor}), shape_(shape) {}

RectangleMouseTool::~RectangleMouseTool() {
    guardedEnd([this] { deactivate(); });
}

std::string RectangleMouseTool::getPointText_(const Vec3& pos) const {
    std::ostringstream text;
    appendLLAText_(text, pos);
    text << shape_.getShortPointText_(pos, grabbedRole_ == First);
    const auto other = grabbedRole_ == First ? shape_.lastCorner() : shape_.firstCorner();
    if (shape_.subtype() == RectangleShape::Rectangle && other && isPlace(*other) && *other != pos) {
        halCore::PathMeasure corners;
        corners.add({other->lat(), pos.lon(), 0.0});
        corners.add(*other);
        corners.add({pos.lat(), other->lon(), 0.0});
        appendArea_(text, corners.areaTo(pos));
    }
    return text.str();
}

void RectangleMouseTool::handleStartDrag_(const Vec3& pos) {
    firstPress_ = !isPlaced_();
    if (!firstPress_) return;
    shape_.setFirstCorner(pos);
    shapeChanged_();
}

void RectangleMouseTool::handleFinishDrag_(const Vec3& pos) {
    if (releasedOnPoint_(pos) || !isPlaced_()) {
        handleAbortDrag_();
        return;
    }
    span_(shape_, pos);
    state_ = restingState_();
    shapeChanged_();
}

void RectangleMouseTool::handleAbortDrag_() {
    if (isComplete_()) return;
    forgetNearPoint_();
    shape_.clear();
    shapeChanged_();
}

std::optional<Vec3> RectangleMouseTool::placeOf_(Role role) const {
    if (role == Anchor) return shape_.firstCorner() ? std::nullopt : shape_.typedAnchor();
    return role == First ? shape_.firstCorner() : shape_.lastCorner();
}

PluginUtils::PUDrawPoint* RectangleMouseTool::pointNearMouse_(const Vec3& pos) {
    PluginUtils::PUDrawPoint* const near = HandleMouseTool::pointNearMouse_(pos);
    if (grabbedRole_ != Anchor) return near;
    clearGrab_();
    return nullptr;
}

void RectangleMouseTool::span_(RectangleShape& rectangle, const Vec3& pos) const {
    const auto anchor = shape_.firstCorner() ? std::nullopt : shape_.typedAnchor();
    if (anchor && shape_.anchorCenter()) {
        const auto size = RectangleGeometry::calcWidthHeight(*anchor, pos);
        rectangle.setFromCenter(Vec3(anchor->lat(), anchor->lon(), pos.alt()), 2.0 * size.width,
                                2.0 * size.height);
        return;
    }
    rectangle.setFirstCorner(anchor ? *anchor : *shape_.firstCorner());
    rectangle.setLastCorner(pos);
}

std::unique_ptr<BaseLineShape> RectangleMouseTool::makeRubberBand_() const {
    return std::unique_ptr<BaseLineShape>(static_cast<RectangleShape*>(shape_.clone()));
}

bool RectangleMouseTool::shapeRubberBand_(BaseLineShape& rubberBand, const Vec3& pos) {
    if (!isPlaced_()) return false;
    span_(static_cast<RectangleShape&>(rubberBand), pos);
    return true;
}

void RectangleMouseTool::moveGrabbed_(const Vec3& pos) {
    if (grabbedRole_ == 0 || placeOf_(grabbedRole_).value_or(pos) == pos) return;
    // Both corners in one point are no rectangle: the last one stays until the cursor goes on.
    const auto other = placeOf_(grabbedRole_ == First ? Last : First);
    if (other && other->lat() == pos.lat() && other->lon() == pos.lon()) return;
    if (grabbedRole_ == First)
        shape_.setFirstCorner(pos);
    else
        shape_.setLastCorner(pos);
    shapeChanged_();
}

std::optional<double> RectangleMouseTool::placedAltitude_() const {
    const auto first = shape_.firstCorner() ? shape_.firstCorner() : shape_.typedAnchor();
    return first ? std::optional(first->alt()) : std::nullopt;
}

std::optional<Vec3> RectangleMouseTool::opposite_() const {
    if (state_ == Dragging) return placeOf_(grabbedRole_ == First ? Last : First);
    return shape_.firstCorner() ? shape_.firstCorner() : shape_.typedAnchor();
}

Vec3 RectangleMouseTool::constrained_(const Vec3& pos, bool steps, bool) const {
    const auto from = opposite_();
    if (!from || !steps) return pos;
    const auto size = RectangleGeometry::calcWidthHeight(*from, pos);
    const double side = std::max(std::abs(size.width), std::abs(size.height));
    if (!(std::min(std::abs(size.width), std::abs(size.height)) > 0.0)) return pos;
    double width = std::copysign(side, size.width);
    double height = std::copysign(side, size.height);
    Vec3 corner = RectangleGeometry::calcCornerPoint(*from, width, height);
    // What the panel shows of it is measured at the centre when that is the anchor.
    constexpr int rounds = 5;
    for (int i = 0; i < rounds && shape_.anchorCenter() && shape_.firstCorner(); ++i) {
        const auto shown = RectangleGeometry::spanBetween({*from, corner}).size;
        width *= side / std::abs(shown.width);
        height *= side / std::abs(shown.height);
        corner = RectangleGeometry::calcCornerPoint(*from, width, height);
    }
    return {corner.lat(), corner.lon(), pos.alt()};
}

std::string RectangleMouseTool::modifierHint_() const {
    return opposite_() ? ". Shift: as wide as high" : "";
}

std::string_view RectangleMouseTool::placingHint_() const {
    if (pressed_) return "Release at the opposite corner. Releasing on the first one starts again";
    if (shape_.firstCorner()) return "Press, drag and release at the opposite corner";
    if (shape_.typedAnchor()) return "Press, drag and release at a corner";
    return "Press at the first corner and drag to the opposite one. Shift + wheel sets the altitude";
}

}  // namespace OverlayEditor
