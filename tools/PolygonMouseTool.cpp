#include "tools/PolygonMouseTool.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "geo/GeodesicPath.h"
#include "geo/Sodano.h"
#include "pi/Guard.h"

namespace OverlayEditor {

using halCore::Vec3;
using PluginUtils::PUDrawPoint;

PolygonMouseTool::PolygonMouseTool(const Preferences& preferences, PolygonShape& shape)
    : ShapeMouseTool(preferences, shape), shape_(shape) {}

PolygonMouseTool::~PolygonMouseTool() {
    guardedEnd([this] { deactivate(); });
}

void PolygonMouseTool::activate() {
    if (isActive()) return;
    ShapeMouseTool::activate();
    // The points may have moved meanwhile.
    resetPoints_();
}

int PolygonMouseTool::leftRelease_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) {
    const bool clicked = state_ == Dragging && !moved_;
    const int result = ShapeMouseTool::leftRelease_(type, event);
    if (clicked && firstPoint_) removeFirstPoint_();
    return result;
}

void PolygonMouseTool::resetPoints_() {
    if (!isActive()) return;
    forgetNearPoint_();
    if (state_ == Dragging || state_ == Hovering) finishEditing_();
    clearGrab_();
    measured_ = false;
    firstPoint_ = firstPoint_ && shape_.getNumPoints() == 1;
    drawn_.setPositions(shape_.points());
}

void PolygonMouseTool::carryPoints_() {
    revision_ = shape_.placed().revision();
    measured_ = false;
    drawn_.setPositions(shape_.points());
    if (nearPoint_) nearPoint_->setDescription(nearText_());
}

std::string PolygonMouseTool::getPointText_(const Vec3& pos) const {
    std::ostringstream text;
    appendLLAText_(text, pos);
    const std::size_t index = pointIndex();
    if (index == 0 || index > shape_.getNumPoints()) return text.str();
    const Vec3& previous = shape_.points()[index - 1];
    if (!isPlace(previous)) return text.str();
    const double meters = halCore::Sodano::inverse(previous, pos).distance;
    // On the last point, as after Undo, no leg leads to the cursor.
    if (!grabbed_ && meters <= 0.5 * view_.metersPerPixel(halCore::toEcef(pos))) return text.str();
    appendRange_(text, " Dist: ", meters);
    appendBearing_(text, previous, pos);
    if (index > 1 && index == shape_.getNumPoints()) appendSums_(text, pos);
    return text.str();
}

void PolygonMouseTool::appendSums_(std::ostream& text, const Vec3& pos) const {
    const auto& points = shape_.points();
    if (!measured_ || measure_.size() != points.size()) {
        // More would be felt, with every point that moves.
        constexpr std::size_t most = 1000;
        measured_ = points.size() <= most && std::ranges::all_of(points, isPlace);
        if (!measured_) return;
        measure_.clear();
        for (const Vec3& point : points) measure_.add(point);
    }
    appendRange_(text, " Sum: ", measure_.lengthTo(pos));
    if (shape_.subtype() == PolygonShape::Polygon) appendArea_(text, measure_.areaTo(pos));
}

std::optional<Vec3> PolygonMouseTool::pivot_() const {
    const auto& points = shape_.points();
    const std::size_t index = state_ == Dragging ? grabbed_.value_or(points.size()) : points.size();
    // A line's first point lies about the second one.
    const std::size_t from = index > 0 ? index - 1 : 1;
    return from < points.size() && isPlace(points[from]) ? std::optional(points[from]) : std::nullopt;
}

std::optional<double> PolygonMouseTool::lastLength_() const {
    const auto& points = shape_.points();
    if (points.size() < 2 || !isPlace(points.back()) || !isPlace(points[points.size() - 2]))
        return std::nullopt;
    return halCore::geodesicBetween(points[points.size() - 2], points.back()).meters;
}

void PolygonMouseTool::handleStartDrag_(const Vec3& pos) {
    if (shape_.getNumPoints() == 0) firstPress_ = firstPoint_ = append_(pos);
}

void PolygonMouseTool::handleFinishDrag_(const Vec3& pos) {
    const bool placedFirst = std::exchange(firstPress_, false);
    const auto under = placedFirst && isClick_() && drawn_.size() > 0
                           ? std::optional<std::size_t>(0)
                           : drawn_.under(PluginUtils::GrabbingCursor(pos, view_));
    PUDrawPoint* point = under ? &drawn_.point(*under) : nullptr;
    if (point && firstPoint_ && !placedFirst) {
        removeFirstPoint_();
        return;
    }
    if (!point) {
        firstPoint_ = false;
        if (!append_(pos)) return;
        point = &drawn_.point(drawn_.size() - 1);
    }
    // As if the cursor had been moved onto it: the next press without a motion grabs it.
    forgetNearPoint_();
    if (!showPoints_) return;
    if (under) shape_.showPoint(*under);
    takeAltitude_(point->getAltitude());
    point->setHighlighted(true);
    nearPoint_ = point;
    point->setDescription(nearText_());
}

void PolygonMouseTool::handleAbortDrag_() {
    if (std::exchange(firstPress_, false)) removeFirstPoint_();
}

bool PolygonMouseTool::append_(const Vec3& pos) {
    removeTempGraphics_();
    const std::size_t before = shape_.getNumPoints();
    shape_.mouseSetPointAtIndex(before, pos);
    drawn_.setPositions(shape_.points());
    if (shape_.getNumPoints() <= before) return false;
    if (measured_) measure_.add(shape_.points().back());
    return true;
}

void PolygonMouseTool::removeFirstPoint_() {
    firstPoint_ = false;
    shape_.deletePointAtIndex(0);
}

PUDrawPoint* PolygonMouseTool::pointNearMouse_(const Vec3& pos) {
    grabbed_ = drawn_.grabbedBy(PluginUtils::GrabbingCursor(pos, view_));
    return grabbed_ ? &drawn_.point(*grabbed_) : nullptr;
}

void PolygonMouseTool::redrawPointsForViewChange_() {
    picture_.add(drawn_);
    if (shape_.isComplete() || drawn_.size() != 2) return;
    const Vec3& from = drawn_.point(0).getPosition();
    const Vec3& to = drawn_.point(1).getPosition();
    if (!isPlace(from) || !isPlace(to)) return;
    side_.setPositions(from, to);
    side_.setColor(shape_.lineColor());
    side_.setWidth(shape_.lineWidth());
    side_.show();
    picture_.add(side_);
}

void PolygonMouseTool::drawGuide_(const Vec3& pos) {
    const auto& points = shape_.points();
    const auto lead = [&](PluginUtils::PUDrawLine& line, const Vec3& from) {
        if (!isPlace(from)) return;
        line.setPositions(from, pos);
        line.show();
        picture_.add(line);
    };
    // While the button is held the rubber band goes on from the last point.
    if (!points.empty() && !pressed_) lead(onward_, points.back());
    if (points.size() > 1 && shape_.subtype() == PolygonShape::Polygon) lead(back_, points.front());
}

void PolygonMouseTool::pointTaken_() {
    ShapeMouseTool::pointTaken_();
    if (grabbed_) shape_.showPoint(*grabbed_);
}

std::optional<double> PolygonMouseTool::placedAltitude_() const {
    const auto& points = shape_.points();
    return !points.empty() && isPlace(points.back()) ? std::optional(points.back().alt()) : std::nullopt;
}

void PolygonMouseTool::showEditPoints_(bool shown) {
    if (drawn_.size() != shape_.getNumPoints()) resetPoints_();
    if (isActive() && revision_ != shape_.placed().revision()) carryPoints_();
    // A line that the host cannot show yet would be nowhere.
    shown = shown || (isActive() && !shape_.isComplete());
    if (shown == drawn_.isShown()) return;
    if (shown)
        drawn_.show();
    else
        drawn_.hide();
}

std::unique_ptr<BaseLineShape> PolygonMouseTool::makeRubberBand_() const {
    auto line = std::make_unique<PolygonShape>(prefs_, PolygonShape::Line);
    line->setLineWidth(shape_.lineWidth());
    return line;
}

bool PolygonMouseTool::shapeRubberBand_(BaseLineShape& rubberBand, const Vec3& pos) {
    if (shape_.getNumPoints() == 0 || !isPlace(shape_.points().back())) return false;
    auto& line = static_cast<PolygonShape&>(rubberBand);
    line.setPointAtIndex(0, shape_.points().back());
    line.setPointAtIndex(1, pos);
    return true;
}

void PolygonMouseTool::clearGrab_() {
    grabbed_.reset();
    moved_ = false;
}

void PolygonMouseTool::moveGrabbed_(const Vec3& pos) {
    if (!grabbed_ || *grabbed_ >= shape_.getNumPoints() || *grabbed_ >= drawn_.size()) return;
    if (shape_.points()[*grabbed_] == pos) return;
    moved_ = state_ == Dragging;
    measured_ = false;
    drawn_.setPosition(*grabbed_, pos);
    shape_.mouseSetPointAtIndex(*grabbed_, pos);
}

std::string_view PolygonMouseTool::placingHint_() const {
    if (firstPress_) return "Release here, or drag to the second point";
    if (pressed_) return "Release to place the point";
    switch (shape_.getNumPoints()) {
        case 0:
            return "Click the first point. Shift + wheel sets the altitude";
        case 1:
            return "Click the second point";
        default:
            return "Click the next point. Right click ends drawing";
    }
}

std::string_view PolygonMouseTool::hoveringHint_() const {
    if (firstPoint_) return "Click to remove this point, drag to move it. Shift + wheel changes its altitude";
    if (shape_.subtype() == PolygonShape::Polygon && shape_.getNumPoints() > 2 &&
        nearPoint_ == &drawn_.point(0))
        return "Right click ends the polygon, which closes by itself. Drag to move this point";
    return ShapeMouseTool::hoveringHint_();
}

}  // namespace OverlayEditor
