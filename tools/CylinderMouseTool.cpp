#include "tools/CylinderMouseTool.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "geo/Angles.h"
#include "geo/Farthest.h"
#include "geo/Sodano.h"
#include "model/ShapeKinds.h"

namespace OverlayEditor {

using halCore::Ecef;
using halCore::Vec3;
using PluginUtils::PUDrawPoint;

namespace {

constexpr unsigned int kHeightColor = 0x00FFFFFF;
/// How far from the centre the height handle keeps, in pixels of the mouse events.
constexpr double kHandleDistance = 28.0;

std::vector<int> withHeight(std::initializer_list<int> order) {
    std::vector<int> roles(order);
    roles.push_back(CylinderMouseTool::Height);
    return roles;
}

CylinderShape::EditPoint editPoint(int role) {
    return static_cast<CylinderShape::EditPoint>(role - CylinderMouseTool::Center);
}

}  // namespace

CylinderMouseTool::CylinderMouseTool(const Preferences& preferences, CylinderShape& shape,
                                     std::initializer_list<Role> order)
    : HandleMouseTool(preferences, shape, withHeight(order)), shape_(shape) {}

std::optional<Vec3> CylinderMouseTool::placeOf_(Role role) const {
    if (role == Center) return shape_.centerPt();
    if (role != Height) {
        const auto& place = shape_.editPoint(editPoint(role));
        return place && shape_.centerPt() ? std::optional(headed_(*place, shape_.heading())) : place;
    }
    return hasHeight_() && shape_.isComplete() && shape_.centerPt() ? std::optional(top_()) : std::nullopt;
}

void CylinderMouseTool::dress_(PUDrawPoint& point, Role role) const {
    if (role == Height) point.setColor(kHeightColor);
}

bool CylinderMouseTool::isDrawn_(Role role) const {
    return shape_.isEditPointShown(editPoint(role));
}

std::optional<Ecef> CylinderMouseTool::drawnAt_(const PUDrawPoint& point, Role role) const {
    if (role != Height) return point.ecef();
    const auto top = view_.visiblePixel(point.ecef());
    if (!top) return std::nullopt;
    const Ecef center = halCore::toEcef(center_());
    const auto centerPixel = view_.pixel(center);
    const double apart = kHandleDistance * view_.pixelScale();
    return !centerPixel || distance(*top, *centerPixel) >= apart ? point.ecef() : view_.raised(center, apart);
}

void CylinderMouseTool::moveGrabbed_(const Vec3& pos) {
    if (!shape_.centerPt() || grabbed() == None) return;
    if (grabbed() == Height)
        moveTop_(pos);
    else
        movePoint_(grabbed(), grabbed() == Center ? pos : headed_(pos, -shape_.heading()));
    shapeChanged_();
}

void CylinderMouseTool::moveTop_(const Vec3& pos) {
    const Vec3 center = center_();
    const Vec3 beneath(pos.lat(), pos.lon(), center.alt());
    const bool lifted = pos.alt() != top_().alt();
    if (beneath != center) shape_.moveCenter(beneath);
    if (lifted) shape_.setHeight(std::max(0.0, pos.alt() - center.alt()));
}

Vec3 CylinderMouseTool::headed_(const Vec3& place, double radians) const {
    if (radians == 0.0) return place;
    const auto way = halCore::Sodano::inverse(center_(), place);
    Vec3 turned = halCore::Sodano::direct(center_(), way.azimuth1 + radians, way.distance);
    turned.setAlt(place.alt());
    return turned;
}

bool CylinderMouseTool::hasHeight_() const {
    return shape_.kind().height == ShapeKind::Height::Own;
}

Vec3 CylinderMouseTool::top_() const {
    const Vec3 center = center_();
    return {center.lat(), center.lon(), center.alt() + shape_.height()};
}

void CylinderMouseTool::showEditPoints_(bool shown) {
    shape_.setEditPointsShown(shown, shown && hasHeight_());
    HandleMouseTool::showEditPoints_(shown);
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
    return HandleMouseTool::completeHint_();
}

std::string_view CylinderMouseTool::hoveringHint_() const {
    if (roleOf_(nearPoint_) == Height) return "Shift + wheel changes the height. Drag to move the shape";
    if (roleOf_(nearPoint_) == Center) return "Drag to move the centre. Shift + wheel changes the altitude";
    return HandleMouseTool::hoveringHint_();
}

std::optional<double> CylinderMouseTool::placedAltitude_() const {
    return shape_.centerPt() ? std::optional(center_().alt()) : std::nullopt;
}

std::optional<Vec3> CylinderMouseTool::pivot_() const {
    const bool onRim = state_ != Dragging || (grabbed() != Center && grabbed() != Height);
    return onRim ? shape_.centerPt() : std::nullopt;
}

double CylinderMouseTool::turnedAltitude_(int delta) const {
    if (roleOf_(nearPoint_) != Height || !shape_.centerPt()) return HandleMouseTool::turnedAltitude_(delta);
    const double base = center_().alt();
    const double height = top_().alt() - base;
    if (height > 0.0) return std::min(base + adjustAltitude_(delta, height), halCore::kFarthestMeters);
    // One, two or five of a power of ten, near a tenth of the radius.
    const double tenth = std::max(1.0, 0.1 * shape_.majorAxis());
    const double power = std::pow(10.0, std::floor(std::log10(tenth)));
    const double digit = tenth / power;
    return base + power * (digit < 2.0 ? 1.0 : digit < 5.0 ? 2.0 : 5.0);
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

void CylinderMouseTool::complete_() {
    state_ = Complete;
    shapeChanged_();
}

bool CylinderMouseTool::isOn_(const Vec3& pos, const Vec3& place) const {
    if (pos.lat() == place.lat() && pos.lon() == place.lon()) return true;
    const auto cursor = view_.pixel(halCore::toEcef(pos));
    const auto other = view_.pixel(halCore::toEcef(place));
    return cursor && other && distance(*cursor, *other) < view_.pixelScale();
}

double CylinderMouseTool::radiusAt_(const Vec3& pos) const {
    return halCore::Sodano::inverse(center_(), pos).distance;
}

double CylinderMouseTool::bearingAt_(const Vec3& pos) const {
    return halCore::wrapToTwoPi(halCore::Sodano::inverse(center_(), pos).azimuth1);
}

}  // namespace OverlayEditor
