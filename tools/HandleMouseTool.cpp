#include "tools/HandleMouseTool.h"

#include <algorithm>

namespace OverlayEditor {

using PluginUtils::PUDrawPoint;

HandleMouseTool::HandleMouseTool(const Preferences& preferences, Shape& shape, const std::vector<Role>& roles)
    : ShapeMouseTool(preferences, shape), handled_(shape) {
    for (const Role role : roles) handles_.push_back({role, nullptr});
}

PUDrawPoint* HandleMouseTool::pointNearMouse_(const halCore::Vec3& pos) {
    const PluginUtils::GrabbingCursor cursor(pos, view_);
    for (const auto& [role, point] : handles_) {
        const auto at = point ? drawnAt_(*point, role) : std::nullopt;
        if (!at || !cursor.grabs(point->getPosition(), *at)) continue;
        grabbedRole_ = role;
        return point.get();
    }
    clearGrab_();
    return nullptr;
}

bool HandleMouseTool::hasPointAt_(const PluginUtils::GrabbingCursor& cursor) const {
    return std::ranges::any_of(handles_, [&](const Handle& handle) {
        const auto at =
            handle.point && handle.point->isShown() ? drawnAt_(*handle.point, handle.role) : std::nullopt;
        return at && cursor.grabs(handle.point->getPosition(), *at);
    });
}

void HandleMouseTool::redrawPointsForViewChange_() {
    for (const auto& [role, point] : handles_)
        if (const auto at = point ? drawnAt_(*point, role) : std::nullopt) picture_.add(*point, *at);
}

void HandleMouseTool::showEditPoints_(bool shown) {
    for (auto& [role, point] : handles_) {
        const auto place = placeOf_(role);
        if (!place) {
            if (point && nearPoint_ == point.get()) forgetNearPoint_();
            point.reset();
            continue;
        }
        if (!point) {
            point = createEditPoint(*place, PluginUtils::kEditPointColor);
            dress_(*point, role);
        }
        point->setPosition(*place);
        if (shown && isDrawn_(role))
            point->show();
        else
            point->hide();
    }
}

bool HandleMouseTool::releasedOnPoint_(const halCore::Vec3& pos) {
    if (firstPress_ && isClick_()) return true;
    const PluginUtils::GrabbingCursor cursor(pos, view_);
    return std::ranges::any_of(handles_, [&](const Handle& handle) {
        const auto at = handle.point ? drawnAt_(*handle.point, handle.role) : std::nullopt;
        return at && (cursor.grabs(handle.point->getPosition(), *at) ||
                      cursor.standsUnder(handle.point->getPosition()));
    });
}

void HandleMouseTool::shapeChanged_() {
    updateEditPoints_();
    handled_.fillGui();
}

HandleMouseTool::Role HandleMouseTool::roleOf_(const PUDrawPoint* point) const {
    const auto found = std::ranges::find_if(
        handles_, [&](const Handle& handle) { return point && handle.point.get() == point; });
    return found == handles_.end() ? 0 : found->role;
}

}  // namespace OverlayEditor
