#include "tools/ShapeMouseTool.h"

#include <sstream>

#include "geo/Sodano.h"
#include "pi/PICommon.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

using halCore::Vec3;
using PluginUtils::PUDrawPoint;

namespace {

constexpr unsigned int kCursorColor = 0xFFFFFFFF;

}  // namespace

void ShapeMouseTool::activate() {
    if (isActive()) return;
    cursorPoint_ = createEditPoint(Vec3(), kCursorColor);
    edits_ = WholeShape::middleOf(shape_).has_value();
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
    whole_.letGo();
    clearGrab_();
    state_ = restingState_();
}

void ShapeMouseTool::handleAltitudeChange_() {
    if (!nearPoint_) return;
    if (isWhole_()) {
        const bool held = whole_.isHeld();
        if (!held) whole_.take();
        moveWhole_(nearPoint_->getPosition());
        if (!held) whole_.letGo();
        return;
    }
    grab_(nearPoint_);
    handleMovePoint_(nearPoint_->getPosition());
    if (state_ != Dragging && state_ != Hovering) clearGrab_();
}

void ShapeMouseTool::handleMovePoint_(const Vec3& pos) {
    if (isWhole_()) return moveWhole_(pos);
    moveGrabbed_(pos);
    updateEditPoints_();
    if (nearPoint_) nearPoint_->setDescription(nearText_());
}

// The whole shape

void ShapeMouseTool::updatePoints_() {
    updateEditPoints_();
    whole_.follow(isActive() && showPoints_ && (edits_ || isDone_()));
    if (isWhole_() && !whole_.isShown()) forgetNearPoint_();
}

PUDrawPoint* ShapeMouseTool::wholeNearMouse_(const Vec3& pos) {
    if (!whole_.isShown()) return nullptr;
    const PluginUtils::GrabbingCursor cursor(pos, view_);
    const auto at = whole_.drawnAt(view_, [this](const auto& over) { return hasPointAt_(over); });
    return cursor.grabs(whole_.point().getPosition(), at) ? &whole_.point() : nullptr;
}

std::optional<Vec3> ShapeMouseTool::wholeFrom_() const {
    return whole_.isHeld() ? std::optional(whole_.takenAt()) : std::nullopt;
}

void ShapeMouseTool::pointTaken_() {
    if (isWhole_()) whole_.take();
}

void ShapeMouseTool::moveWhole_(const Vec3& pos) {
    if (!whole_.isHeld()) return;
    whole_.moveTo(pos);
    wholeMoved_();
    if (nearPoint_) nearPoint_->setDescription(nearText_());
}

void ShapeMouseTool::handleTurn_(const Vec3& cursor, bool steps) {
    if (!whole_.isHeld()) return;
    const auto middle = view_.pixel(halCore::toEcef(whole_.point().getPosition()));
    const auto pixel = view_.pixel(halCore::toEcef(Vec3(cursor.lat(), cursor.lon(), 0.0)));
    const bool isNear =
        middle && pixel && distance(*middle, *pixel) < PluginUtils::kGrabRadius * view_.pixelScale();
    whole_.turnTo(cursor, isNear, steps);
    wholeMoved_();
    if (nearPoint_) nearPoint_->setDescription(nearText_());
}

void ShapeMouseTool::wholeMoved_() {
    updateEditPoints_();
    shape_.fillGui();
}

std::string ShapeMouseTool::wholeText_() const {
    const Vec3& middle = whole_.point().getPosition();
    std::ostringstream text;
    appendLLAText_(text, middle);
    if (!whole_.isHeld()) return text.str();
    if (!whole_.lies()) text << " No room beyond";
    if (const auto way = halCore::Sodano::inverse(whole_.takenAt(), middle); way.distance > 0.0) {
        appendRange_(text, " Dist: ", way.distance);
        appendBearing_(text, whole_.takenAt(), middle);
    }
    if (whole_.turned() != 0.0) appendAngle_(text, " Turn: ", whole_.turned());
    return text.str();
}

std::string ShapeMouseTool::nearText_() {
    if (isWhole_()) return wholeText_();
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
    if (whole_.isShown())
        picture_.add(whole_.point(),
                     whole_.drawnAt(view_, [this](const auto& over) { return hasPointAt_(over); }));
    if (!rubberBandWanted_) hideRubberBand_();
}

void ShapeMouseTool::hideRubberBand_() {
    if (!rubberBandShown_) return;
    rubberBandShown_ = false;
    rubberBand_->setShown(false);
}

}  // namespace OverlayEditor
