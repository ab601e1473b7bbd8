#include "tools/CylinderMouseTool.h"

#include <algorithm>

#include "geo/Angles.h"
#include "geo/Sodano.h"
#include "model/ShapeKinds.h"
#include "tools/PUDrawPoints.h"

namespace OverlayEditor {

using halCore::Vec3;
using PluginUtils::PUDrawPoint;

namespace {

constexpr unsigned int kHeightColor = 0x00FFFFFF;
/// How far from the centre the height handle keeps, in pixels of the mouse events.
constexpr double kHandleDistance = 28.0;

}  // namespace

CylinderMouseTool::CylinderMouseTool(const Preferences& preferences, CylinderShape& shape,
                                     std::span<const Grabbed> order)
    : ShapeMouseTool(preferences), shape_(shape), order_(order) {}

PUDrawPoint* CylinderMouseTool::pointOf_(Grabbed which) const {
    switch (which) {
        case Center:
            return shape_.centerPt();
        case MajorAxis:
            return shape_.majorAxisPt();
        case MinorAxis:
            return shape_.minorAxisPt();
        case StartAngle:
            return shape_.startAnglePt();
        case EndAngle:
            return shape_.endAnglePt();
        case Height:
        case None:
            break;
    }
    return nullptr;
}

CylinderMouseTool::Grabbed CylinderMouseTool::whichPoint_(const PUDrawPoint* point) const {
    if (!point) return None;
    if (point == heightHandle_.get()) return Height;
    const auto found = std::ranges::find(order_, point, [&](Grabbed which) { return pointOf_(which); });
    return found == order_.end() ? None : *found;
}

bool CylinderMouseTool::hasPoint_(const PUDrawPoint* point) const {
    return whichPoint_(point) != None;
}

PUDrawPoint* CylinderMouseTool::pointNearMouse_(const Vec3& pos) {
    grabbed_ = None;
    for (const Grabbed which : order_) {
        PUDrawPoint* const point = pointOf_(which);
        if (!point || !PluginUtils::canGrab(*point, pos, view_)) continue;
        grabbed_ = which;
        return point;
    }
    updateHeightHandle_();
    if (heightHandle_ && view_.isValid()) {
        const auto handle = view_.pixel(heightHandlePlace_());
        const auto cursor = view_.pixel(ViewProjection::toEcef(Vec3(pos.lat(), pos.lon(), 0.0)));
        if (handle && cursor && view_.visiblePixel(heightHandle_->getPosition()) &&
            distance(*handle, *cursor) <= PluginUtils::kGrabRadius * view_.pixelScale()) {
            grabbed_ = Height;
            return heightHandle_.get();
        }
    }
    return nullptr;
}

void CylinderMouseTool::redrawPointsForViewChange_() {
    // Points that the panel made are new to the tool.
    updateEditPoints_();
    for (const Grabbed which : order_)
        if (const PUDrawPoint* const point = pointOf_(which)) picture_.add(*point);
    updateHeightHandle_();
    if (heightHandle_ && view_.visiblePixel(heightHandle_->getPosition()))
        picture_.add(*heightHandle_, heightHandlePlace_());
}

void CylinderMouseTool::moveGrabbed_(const Vec3& pos) {
    if (!shape_.centerPt() || grabbed_ == None) return;
    if (grabbed_ == Height)
        moveHeightHandle_(pos);
    else
        movePoint_(grabbed_, pos);
    shapeChanged_();
}

void CylinderMouseTool::moveHeightHandle_(const Vec3& pos) {
    const Vec3 center = center_();
    const Vec3 beneath(pos.lat(), pos.lon(), center.alt());
    const bool lifted = pos.alt() != heightHandle_->getAltitude();
    if (beneath != center) movePoint_(Center, beneath);
    if (lifted && isActive()) shape_.setHeight(std::max(0.0, pos.alt() - center.alt()));
    updateHeightHandle_();
}

bool CylinderMouseTool::hasHeight_() const {
    return shape_.kind().height == ShapeKind::Height::Own;
}

void CylinderMouseTool::updateHeightHandle_() {
    if (!isActive() || !hasHeight_() || !shape_.centerPt() || !shape_.isComplete()) {
        if (heightHandle_ && nearPoint_ == heightHandle_.get()) forgetNearPoint_();
        heightHandle_.reset();
        return;
    }
    const Vec3 center = center_();
    const Vec3 top(center.lat(), center.lon(), center.alt() + shape_.height());
    if (!heightHandle_) heightHandle_ = createEditPoint(top, kHeightColor);
    heightHandle_->setPosition(top);
    if (showPoints_)
        heightHandle_->show();
    else
        heightHandle_->hide();
}

Vec3 CylinderMouseTool::heightHandlePlace_() const {
    const Vec3 top = ViewProjection::toEcef(heightHandle_->getPosition());
    const Vec3 center = ViewProjection::toEcef(center_());
    const auto topPixel = view_.pixel(top);
    const auto centerPixel = view_.pixel(center);
    const double apart = kHandleDistance * view_.pixelScale();
    if (!topPixel || !centerPixel || distance(*topPixel, *centerPixel) >= apart) return top;
    return view_.raised(center, apart);
}

void CylinderMouseTool::showEditPoints_(bool shown) {
    shape_.setEditPointsShown(shown, false);
    if (!shown) {
        if (heightHandle_ && nearPoint_ == heightHandle_.get()) forgetNearPoint_();
        heightHandle_.reset();
    }
}

std::unique_ptr<BaseLineShape> CylinderMouseTool::makeRubberBand_() const {
    return std::unique_ptr<BaseLineShape>(static_cast<CylinderShape*>(shape_.clone()));
}

bool CylinderMouseTool::shapeRubberBand_(BaseLineShape& rubberBand, const Vec3& pos) {
    if (!shape_.centerPt()) return false;
    auto& cylinder = static_cast<CylinderShape&>(rubberBand);
    // At the altitude that the wheel has given meanwhile.
    const Vec3 center = center_();
    cylinder.setCenter(Vec3(center.lat(), center.lon(), pos.alt()));
    spanRubberBand_(cylinder, pos);
    return true;
}

std::string_view CylinderMouseTool::completeHint_() const {
    if (showPoints_ && hasHeight_() && shape_.height() == 0.0)
        return "No height yet: Shift + wheel on the cyan point, or \"Height:\" in the panel, gives it one";
    return ShapeMouseTool::completeHint_();
}

std::string_view CylinderMouseTool::hoveringHint_() const {
    if (nearPoint_ == heightHandle_.get()) return "Shift + wheel changes the height. Drag to move the shape";
    if (nearPoint_ == shape_.centerPt()) return "Drag to move the centre. Shift + wheel changes the altitude";
    return ShapeMouseTool::hoveringHint_();
}

bool CylinderMouseTool::releasedOnPoint_(const Vec3& pos) {
    const bool onPoint = pointNearMouse_(pos) != nullptr;
    clearGrab_();
    return onPoint;
}

void CylinderMouseTool::lift_(double altitude) {
    const Vec3 center = center_();
    if (center.alt() != altitude) shape_.moveCenter(Vec3(center.lat(), center.lon(), altitude));
}

void CylinderMouseTool::resetShape_() {
    forgetNearPoint_();
    clearGrab_();
    shape_.clear();
    shapeChanged_();
}

void CylinderMouseTool::shapeChanged_() {
    if (!isActive()) return;
    updateEditPoints_();
    shape_.fillGui();
}

void CylinderMouseTool::complete_() {
    if (!isActive()) return;
    state_ = Complete;
    shapeChanged_();
}

double CylinderMouseTool::radiusAt_(const Vec3& pos) const {
    return halCore::Sodano::inverse(center_(), pos).distance;
}

double CylinderMouseTool::bearingAt_(const Vec3& pos) const {
    return halCore::wrapToTwoPi(halCore::Sodano::inverse(center_(), pos).azimuth1);
}

}  // namespace OverlayEditor
