#include "tools/ShapeMouseTool.h"

#include "pi/PICommon.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

using halCore::Vec3;

namespace {

constexpr unsigned int kCursorColor = 0xFFFFFFFF;

}  // namespace

void ShapeMouseTool::activate() {
    if (isActive()) return;
    cursorPoint_ = createEditPoint(Vec3(), kCursorColor);
    state_ = restingState_();
    pressed_ = false;
    updateEditPoints_();
    if (!rubberBand_) {
        rubberBand_ = makeRubberBand_();
        if (rubberBand_) {
            rubberBand_->setShown(false);
            rubberBand_->setActive(true);
            rubberBand_->setLineColor(255, 115, 0, 255);
        }
        rubberBandShown_ = false;
    }
    PIGUI::grabMouse();
    PICommon::forceOpenGLRedraw();
}

void ShapeMouseTool::deactivate() {
    if (!isActive()) return;
    if (pressed_) {
        pressed_ = false;
        handleAbortDrag_();
        firstPress_ = false;
    }
    finishEditing_();
    forgetNearPoint_();
    removeTempGraphics_();
    rubberBandShown_ = false;
    rubberBand_.reset();
    cursorPoint_.reset();
    showEditPoints_(false);
    state_ = Inactive;
    PIGUI::ungrabMouse();
    PICommon::forceOpenGLRedraw();
    notifyDrawDone_();
}

void ShapeMouseTool::setShowPoints(bool shown) {
    BaseMouseTool::setShowPoints(shown);
    if (!isActive()) return;
    if (!shown && state_ != Dragging) {
        forgetNearPoint_();
        if (state_ == Hovering) finishEditing_();
    }
    updateEditPoints_();
    PICommon::forceOpenGLRedraw();
}

void ShapeMouseTool::preDrawOnRefresh(int width, int height) {
    // The panel, too, completes a shape or takes its radius away.
    if (!pressed_ && (state_ == Placing || state_ == Complete)) state_ = restingState_();
    refreshing_ = true;
    BaseMouseTool::preDrawOnRefresh(width, height);
    refreshing_ = false;
}

void ShapeMouseTool::finishEditing_() {
    clearGrab_();
    state_ = restingState_();
}

void ShapeMouseTool::handleAltitudeChange_() {
    if (!nearPoint_) return;
    grab_(nearPoint_);
    handleMovePoint_(nearPoint_->getPosition());
    if (state_ != Dragging && state_ != Hovering) clearGrab_();
}

void ShapeMouseTool::handleMovePoint_(const Vec3& pos) {
    moveGrabbed_(pos);
    updateEditPoints_();
    if (nearPoint_) nearPoint_->setDescription(nearText_());
}

std::string ShapeMouseTool::nearText_() {
    // A point that was let go is still highlighted.
    if (state_ != Dragging && state_ != Hovering) grab_(nearPoint_);
    std::string text = getPointText_(nearPoint_->getPosition());
    if (state_ != Dragging && state_ != Hovering) clearGrab_();
    return text;
}

void ShapeMouseTool::drawTempGraphics_(const Vec3& pos) {
    if (!rubberBand_) return;
    rubberBandWanted_ = true;
    if (rubberBandShown_ && rubberBandAt_ == pos) return;
    if (rubberBandShown_) rubberBand_->setShown(false);
    rubberBandShown_ = shapeRubberBand_(*rubberBand_, pos);
    if (!rubberBandShown_) return;
    rubberBandAt_ = pos;
    rubberBand_->setShown(true);
}

void ShapeMouseTool::removeTempGraphics_() {
    rubberBandWanted_ = false;
    if (!refreshing_) hideRubberBand_();
}

void ShapeMouseTool::finishRefresh_() {
    if (!rubberBandWanted_) hideRubberBand_();
}

void ShapeMouseTool::hideRubberBand_() {
    if (!rubberBandShown_) return;
    rubberBandShown_ = false;
    rubberBand_->setShown(false);
}

}  // namespace OverlayEditor
