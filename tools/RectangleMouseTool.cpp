#include "tools/RectangleMouseTool.h"

#include <sstream>

#include "tools/PUDrawPoints.h"

namespace OverlayEditor {

using halCore::Vec3;
using PluginUtils::PUDrawPoint;

RectangleMouseTool::RectangleMouseTool(const Preferences& preferences, RectangleShape& shape)
    : ShapeMouseTool(preferences), shape_(shape) {}

RectangleMouseTool::~RectangleMouseTool() {
    deactivate();
}

std::string RectangleMouseTool::getPointText_(const Vec3& pos) const {
    std::ostringstream text;
    appendLLAText_(text, pos);
    return text.str() + shape_.getShortPointText_(pos, grabbed_ == First);
}

void RectangleMouseTool::handleStartDrag_(const Vec3& pos) {
    if (shape_.firstCorner()) return;
    shape_.setFirstCorner(pos);
    shapeChanged_();
}

void RectangleMouseTool::handleFinishDrag_(const Vec3& pos) {
    const bool onPoint = pointNearMouse_(pos) != nullptr;
    clearGrab_();
    if (onPoint || !shape_.firstCorner()) {
        handleAbortDrag_();
        return;
    }
    shape_.setLastCorner(pos);
    if (!isActive()) return;
    state_ = restingState_();
    shapeChanged_();
}

void RectangleMouseTool::handleAbortDrag_() {
    if (isComplete_()) return;
    forgetNearPoint_();
    shape_.clear();
    shapeChanged_();
}

PUDrawPoint* RectangleMouseTool::pointNearMouse_(const Vec3& pos) {
    for (const PointPtr* point : {&firstPoint_, &lastPoint_}) {
        if (!*point || !PluginUtils::canGrab(**point, pos, view_)) continue;
        grab_(point->get());
        return point->get();
    }
    clearGrab_();
    return nullptr;
}

void RectangleMouseTool::redrawPointsForViewChange_() {
    // The panel moves the corners, too.
    updateEditPoints_();
    for (const PointPtr* point : {&firstPoint_, &lastPoint_})
        if (*point) picture_.add(**point);
}

RectangleMouseTool::Grabbed RectangleMouseTool::grabOf_(const PUDrawPoint* point) const {
    if (!point) return None;
    if (point == firstPoint_.get()) return First;
    return point == lastPoint_.get() ? Last : None;
}

void RectangleMouseTool::followCorner_(PointPtr& point, const std::optional<Vec3>& corner, bool shown) {
    if (!corner) {
        if (point && nearPoint_ == point.get()) forgetNearPoint_();
        point.reset();
        return;
    }
    if (!point) point = createEditPoint(*corner, PluginUtils::kEditPointColor);
    if (point->getPosition() != *corner) point->setPosition(*corner);
    if (shown)
        point->show();
    else
        point->hide();
}

void RectangleMouseTool::showEditPoints_(bool shown) {
    followCorner_(firstPoint_, shape_.firstCorner(), shown);
    followCorner_(lastPoint_, shape_.lastCorner(), shown);
}

std::unique_ptr<BaseLineShape> RectangleMouseTool::makeRubberBand_() const {
    return std::unique_ptr<BaseLineShape>(static_cast<RectangleShape*>(shape_.clone()));
}

bool RectangleMouseTool::shapeRubberBand_(BaseLineShape& rubberBand, const Vec3& pos) {
    if (!shape_.firstCorner()) return false;
    auto& rectangle = static_cast<RectangleShape&>(rubberBand);
    rectangle.setFirstCorner(*shape_.firstCorner());
    rectangle.setLastCorner(pos);
    return true;
}

void RectangleMouseTool::moveGrabbed_(const Vec3& pos) {
    if (grabbed_ == None) return;
    const auto& corner = grabbed_ == First ? shape_.firstCorner() : shape_.lastCorner();
    if (!corner || *corner == pos) return;
    if (grabbed_ == First)
        shape_.setFirstCorner(pos);
    else
        shape_.setLastCorner(pos);
    shapeChanged_();
}

void RectangleMouseTool::shapeChanged_() {
    if (!isActive()) return;
    updateEditPoints_();
    shape_.fillGui();
}

std::string_view RectangleMouseTool::placingHint_() const {
    if (pressed_) return "Release at the opposite corner. Releasing on the first one starts again";
    if (shape_.firstCorner()) return "Press, drag and release at the opposite corner";
    return "Press at the first corner and drag to the opposite one. Shift + wheel sets the altitude";
}

}  // namespace OverlayEditor
