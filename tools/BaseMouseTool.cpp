#include "tools/BaseMouseTool.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "common/NumberText.h"
#include "geo/Angles.h"
#include "geo/Farthest.h"
#include "geo/GeodesicPath.h"
#include "geo/MgrsConvert.h"
#include "geo/Sodano.h"
#include "geo/UnitTypes.h"
#include "model/Shape.h"
#include "pi/PICommon.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

using halCore::geodesicBetween;
using halCore::Vec3;
using PIGUI::PIMouseEvent;
using PIGUI::PIMouseEventType_t;
using PluginUtils::PUDrawPoint;

namespace {

constexpr int kWheelNotch = 120;
constexpr double kAltitudeFactor = 1.25;
constexpr double kFirstAltitude = 0.01;
/// Share of the view's height, next to y = 0, in which labels go above their points.
constexpr double kTextAboveBand = 0.05;

Vec3 onGround(const Vec3& lla) {
    return {lla.lat(), lla.lon(), 0.0};
}

}  // namespace

int BaseMouseTool::handleMouseEvent(PIMouseEventType_t type, const PIMouseEvent& event) {
    if (!isActive()) return 0;
    followShape_();
    switch (type) {
        case PIMouseEventType_t::LeftPress:
            return leftPress_(type, event);
        case PIMouseEventType_t::LeftRelease:
            return leftRelease_(type, event);
        case PIMouseEventType_t::RightPress:
            return rightPress_(type, event);
        case PIMouseEventType_t::Motion:
            return mouseMotion_(type, event);
        case PIMouseEventType_t::Wheel:
            return mouseWheel_(type, event);
        case PIMouseEventType_t::Leave:
            leave_();
            return 0;
        default:
            return 0;
    }
}

int BaseMouseTool::leftPress_(PIMouseEventType_t, const PIMouseEvent& event) {
    const bool grabs = nearPoint_ && (state_ == Hovering || grabsAgain_(event));
    lastX_ = pressX_ = event.x;
    lastY_ = pressY_ = event.y;
    modifiers_ = event.modifiers;
    dragged_ = false;
    if (grabs) {
        state_ = Dragging;
        takeAltitude_(nearPoint_->getAltitude());
        rememberGrab_(event);
        removeTempGraphics_();
        pointTaken_();
        turning_ = false;
        if (isWhole_()) steer_(event);
        const auto pivot = isWhole_() ? std::nullopt : pivot_();
        grabbedLength_ =
            pivot ? std::optional(geodesicBetween(*pivot, nearPoint_->getPosition()).meters) : std::nullopt;
        return 1;
    }
    if (state_ == Placing) {
        if (const auto pos = aim_(event)) {
            pressed_ = true;
            handleStartDrag_(*pos);
            PICommon::forceOpenGLRedraw();
        }
        return 1;
    }
    return state_ == Dragging ? 1 : 0;
}

int BaseMouseTool::leftRelease_(PIMouseEventType_t, const PIMouseEvent& event) {
    if (state_ == Dragging) {
        // What it counts from may have carried it on since the mouse moved last.
        if (dragged_) drag_(event);
        finishEditing_();
        PICommon::forceOpenGLRedraw();
        return 1;
    }
    if (state_ != Placing || !pressed_) return 0;
    const auto pos = aim_(event);
    pressed_ = false;
    lastX_ = event.x;
    lastY_ = event.y;
    modifiers_ = event.modifiers;
    PICommon::forceOpenGLRedraw();
    if (pos)
        handleFinishDrag_(*pos);
    else
        handleAbortDrag_();
    firstPress_ = false;
    return pos ? 1 : 0;
}

int BaseMouseTool::rightPress_(PIMouseEventType_t, const PIMouseEvent&) {
    lastX_ = 0;
    lastY_ = 0;
    // Last: who hears that the drawing is done may clear the shape, and this tool with it.
    deactivate();
    return 0;
}

int BaseMouseTool::mouseMotion_(PIMouseEventType_t, const PIMouseEvent& event) {
    lastX_ = event.x;
    lastY_ = event.y;
    modifiers_ = event.modifiers;
    if (state_ == Inactive) return 0;
    if (state_ == Dragging) {
        dragged_ = dragged_ || event.x != pressX_ || event.y != pressY_;
        drag_(event);
        return 1;
    }
    if (state_ == Placing) PICommon::forceOpenGLRedraw();
    const auto pos = cursorPosition_(event.x, event.y);
    if (!pos) {
        // Beside the earth nothing lies under the cursor.
        if (nearPoint_ && !pressed_) letGo_();
        return 0;
    }
    ToolView::current().sawCursor(view_, event.x, event.y, onGround(*pos));

    if (showPoints_ && !pressed_) {
        PUDrawPoint* const near = grabbedAt_(*pos);
        const bool hoversAgain = near && state_ != Hovering;
        if (near != nearPoint_ || hoversAgain) {
            forgetNearPoint_();
            nearPoint_ = near;
            PICommon::forceOpenGLRedraw();
            if (near) {
                near->setHighlighted(true);
                takeAltitude_(near->getAltitude());
                state_ = Hovering;
                near->setDescription(nearText_());
                return 0;
            }
            finishEditing_();
        }
    }
    return state_ == Placing ? 1 : 0;
}

int BaseMouseTool::mouseWheel_(PIMouseEventType_t, const PIMouseEvent& event) {
    if ((event.modifiers & PIGUI::PIModifierShift) == 0) return 0;
    altitude_ = turnedAltitude_(event.wheelDelta);
    if (nearPoint_) {
        const Vec3& near = nearPoint_->getPosition();
        const Vec3 raised(near.lat(), near.lon(), altitude_);
        nearPoint_->setPosition(raised);
        nearPoint_->setDescription(nearText_());
    }
    handleAltitudeChange_();
    PICommon::forceOpenGLRedraw();
    return event.wheelDelta != 0 ? 1 : 0;
}

void BaseMouseTool::leave_() {
    lastX_ = 0;
    lastY_ = 0;
    if (state_ != Dragging) letGo_();
}

void BaseMouseTool::letGo_() {
    forgetNearPoint_();
    if (state_ == Hovering) finishEditing_();
    PICommon::forceOpenGLRedraw();
}

void BaseMouseTool::steer_(const PIMouseEvent& event) {
    const bool turns = turns_() && (event.modifiers & PIGUI::PIModifierControl) != 0;
    if (turns && !turning_) beginTurn_();
    if (turning_ && !turns) rememberGrab_(event);
    turning_ = turns;
    if (!turns) return;
    snap_.reset();
    if (const auto pos = cursorPosition_(event.x, event.y))
        handleTurn_(*pos, (event.modifiers & PIGUI::PIModifierShift) != 0);
}

void BaseMouseTool::drag_(const PIMouseEvent& event) {
    if (isWhole_()) {
        steer_(event);
        PICommon::forceOpenGLRedraw();
        if (turning_) return;
    }
    const auto pos = aim_(event, grabOffsetX_, grabOffsetY_);
    if (!pos || !nearPoint_) return;
    handleMovePoint_(*pos);
    PICommon::forceOpenGLRedraw();
}

void BaseMouseTool::preDrawOnRefresh(int width, int height) {
    if (!isActive()) return;
    followShape_();
    picture_.clear();
    view_ = ToolView::current().capture(width, height);

    removeTempGraphics_();
    if (state_ != Dragging) snap_.reset();
    // Units may have changed.
    if (nearPoint_) nearPoint_->setDescription(nearText_());
    redrawPointsForViewChange_();
    if (state_ == Placing) {
        // Before the first motion nobody knows where the cursor is.
        const bool known = lastX_ != 0 || lastY_ != 0;
        const auto pos = known ? aim_({lastX_, lastY_, modifiers_, 0}) : std::nullopt;
        if (pos && cursorPoint_) {
            cursorPoint_->setPosition(*pos);
            cursorPoint_->setDescription(getPointText_(*pos));
            cursorPoint_->show();
            cursorPoint_->setDrawTextAbove(kTextAboveBand * height > lastY_);
            if (pressed_) drawTempGraphics_(*pos);
            if (!isOver_()) drawGuide_(*pos);
        } else if (cursorPoint_) {
            cursorPoint_->hide();
        }
    } else if (cursorPoint_) {
        cursorPoint_->hide();
    }
    finishRefresh_();

    // A highlighted point under the cursor has a label of its own.
    if (cursorPoint_ && !nearPoint_) picture_.add(*cursorPoint_);
    if (snap_) {
        snapMark_.setPosition(snap_->place);
        snapMark_.setHollow(true);
        snapMark_.setDrawAltimeter(false);
        snapMark_.show();
        picture_.add(snapMark_);
    }
    ToolView::current().paint(view_, picture_);
    picture_.clear();
}

std::string BaseMouseTool::hint() const {
    const bool aims = !isOver_() && (state_ == Placing || state_ == Dragging);
    std::string text;
    if (snap_ && aims) text.append("On ").append(snap_->name).append(". Alt: beside it. ");
    text.append(stateHint_());
    if (state_ == Dragging && isWhole_())
        return text.append(". Shift: 15\u00b0 steps").append(turns_() ? ", Control: turns it" : "");
    if (aims && state_ == Placing && !pressed_) text.append(". Space turns the globe");
    // Where there is something to be put onto, the other modifiers do nothing.
    return aims && !snap_ ? text.append(modifierHint_()) : text;
}

std::string_view BaseMouseTool::stateHint_() const {
    switch (isOver_() ? Hovering : state_) {
        case Inactive:
            break;
        case Complete:
            return completeHint_();
        case Placing:
            return placingHint_();
        case Dragging:
            return isWhole_() ? "Release to leave the shape here. Shift + wheel changes its altitude"
                              : "Release to leave the point here. Shift + wheel changes its altitude";
        case Hovering:
            if (!isWhole_()) return hoveringHint_();
            return turns_()
                       ? "Drag to move the whole shape, with Control to turn it. Shift + wheel changes its "
                         "altitude"
                       : "Drag to move the whole shape. Shift + wheel changes its altitude";
    }
    return {};
}

std::string_view BaseMouseTool::placingHint_() const {
    return pressed_ ? "Release to place the point" : "Press to place a point. Right click ends drawing";
}

std::string_view BaseMouseTool::completeHint_() const {
    return showPoints_
               ? "Drag a point to change the shape, the green one to move it. Right click ends drawing"
               : "The shape is complete. Right click ends drawing";
}

std::string_view BaseMouseTool::hoveringHint_() const {
    return "Drag to move this point. Shift + wheel changes its altitude";
}

double BaseMouseTool::adjustAltitude_(int delta, double altitude) {
    if (!(altitude > 0.0)) return kFirstAltitude;
    return std::min(halCore::kFarthestMeters, altitude * std::pow(kAltitudeFactor, delta / kWheelNotch));
}

std::unique_ptr<PUDrawPoint> BaseMouseTool::createEditPoint(const Vec3& pos, unsigned int rgba) {
    auto point = std::make_unique<PUDrawPoint>(pos, rgba);
    point->setEnableDepthBuffer(false);
    point->setDrawAltimeter(true);
    return point;
}

void BaseMouseTool::appendLLAText_(std::ostream& text, const Vec3& pos) const {
    const auto& units = *prefs_.unitsProvider();
    if (prefs_.coordinateSystem() == Preferences::MGRS) {
        std::string mgrs;
        std::string zone;
        std::string square;
        std::string easting;
        std::string northing;
        UTILS::MgrsConvert::geodeticToMgrs(pos.lat(), pos.lon(), mgrs);
        UTILS::MgrsConvert::divideMgrs(mgrs, zone, square, easting, northing);
        text << "MGRS: " << zone << ' ' << square << ' ' << easting << ' ' << northing << ' '
             << units.formatAltitude(pos.alt());
        return;
    }
    const auto abbreviation = UTILS::unitsGetAbbreviation(prefs_.altitudeUnits());
    if (abbreviation.empty()) {
        text.setstate(std::ios::failbit);
        return;
    }
    text << "LLA: " << units.formatLatitude(pos.lat()) << ' ' << units.formatLongitude(pos.lon()) << ' '
         << units.formatAltitude(pos.alt()) << ' ' << abbreviation;
}

void BaseMouseTool::appendRange_(std::ostream& text, std::string_view label, double meters) const {
    const auto& units = *prefs_.unitsProvider();
    text << label << units.formatRange(meters) << ' ' << UTILS::unitsGetAbbreviation(units.rangeUnits());
}

void BaseMouseTool::appendArea_(std::ostream& text, double squareMeters) const {
    const auto& units = *prefs_.unitsProvider();
    const double unit = UTILS::unitsGetUnits(units.rangeUnits()).toBaseScalar();
    text << " Area: " << UTILS::writeFixed(squareMeters / (unit * unit), units.precision()) << ' '
         << UTILS::unitsGetAbbreviation(units.rangeUnits()) << "\u00b2";
}

void BaseMouseTool::appendBearing_(std::ostream& text, const Vec3& from, const Vec3& to) const {
    appendAngle_(text, " T: ", halCore::wrapToTwoPi(halCore::Sodano::inverse(from, to).azimuth1));
}

void BaseMouseTool::appendAngle_(std::ostream& text, std::string_view label, double radians) const {
    const auto& units = *prefs_.unitsProvider();
    text << label << units.formatAngle(radians);
    // The forms of degrees have their marks.
    using UTILS::UnitType_t;
    if (units.angleUnits() != UnitType_t::DegreesMinutes &&
        units.angleUnits() != UnitType_t::DegreesMinutesSeconds)
        text << ' ' << UTILS::unitsGetAbbreviation(units.angleUnits());
}

void BaseMouseTool::notifyDrawDone_() {
    if (drawDone_) (*drawDone_)(nullptr, nullptr);
}

void BaseMouseTool::forgetNearPoint_() {
    if (!nearPoint_) return;
    nearPoint_->setHighlighted(false);
    nearPoint_->setDescription({});
    nearPoint_ = nullptr;
}

std::optional<Vec3> BaseMouseTool::cursorPosition_(int x, int y) const {
    double lat = 0.0;
    double lon = 0.0;
    if (PIHALVIS::getMouseCursorLLA(x, y, &lat, &lon, nullptr, PIData::PIVerticalDatum_t::WGS84) != 0)
        return std::nullopt;
    return Vec3(lat, lon, altitude_);
}

bool BaseMouseTool::grabsAgain_(const PIMouseEvent& event) {
    if (state_ != Complete && state_ != Placing) return false;
    if (!showPoints_ || event.x != lastX_ || event.y != lastY_) return false;
    const auto pos = cursorPosition_(event.x, event.y);
    return pos && grabbedAt_(*pos) == nearPoint_;
}

void BaseMouseTool::rememberGrab_(const PIMouseEvent& event) {
    grabOffsetX_ = 0;
    grabOffsetY_ = 0;
    const Vec3 foot = onGround(nearPoint_->getPosition());
    const auto footPixel = view_.visiblePixel(halCore::toEcef(foot));
    const auto cursor = cursorPosition_(event.x, event.y);
    if (!footPixel || !cursor) return;
    const auto cursorPixel = view_.pixel(halCore::toEcef(onGround(*cursor)));
    if (!cursorPixel) return;
    grabOffsetX_ = static_cast<int>(std::lround((footPixel->x - cursorPixel->x) / view_.pixelScale()));
    grabOffsetY_ = static_cast<int>(std::lround((footPixel->y - cursorPixel->y) / view_.pixelScale()));
}

bool BaseMouseTool::isClick_() const {
    return std::hypot(lastX_ - pressX_, lastY_ - pressY_) <= PluginUtils::kGrabRadius;
}

void BaseMouseTool::takeAltitude_(double meters) {
    // An offset's place comes back with a rounding, from which the wheel would start.
    constexpr double rounding = 1e-6;
    altitude_ = std::abs(meters) < rounding ? 0.0 : meters;
}

void BaseMouseTool::followShape_() {
    updatePoints_();
    auto placed = placedAltitude_();
    if (const Shape* const shape = edited_(); shape && !placed) placed = shape->altitudeAhead();
    if (placed != placedAt_) {
        placedAt_ = placed;
        if (placed && state_ != Dragging && state_ != Hovering) takeAltitude_(*placed);
    }
    if (!nearPoint_ && (state_ == Dragging || state_ == Hovering)) finishEditing_();
}

}  // namespace OverlayEditor
