#include <cmath>

#include "geo/Angles.h"
#include "geo/GeodesicPath.h"
#include "tools/BaseMouseTool.h"

namespace OverlayEditor {

using halCore::Vec3;

namespace {

constexpr double kStep = 15.0 * halCore::kRadiansPerDegree;

}  // namespace

std::optional<Vec3> BaseMouseTool::aim_(const PIGUI::PIMouseEvent& event, int offsetX, int offsetY) {
    snap_.reset();
    const auto pos = cursorPosition_(event.x + offsetX, event.y + offsetY);
    // A point that is merely clicked stays where it is.
    if (!pos || (state_ == Dragging && !dragged_)) return pos;
    SnapSource* const source = SnapSource::current();
    if (source && (event.modifiers & PIGUI::PIModifierAlt) == 0) {
        // On the ground beneath the cursor, which shows its pixel whatever the screen's density is.
        const auto cursor = offsetX == 0 && offsetY == 0 ? pos : cursorPosition_(event.x, event.y);
        const auto pixel =
            cursor ? view_.pixel(halCore::toEcef(Vec3(cursor->lat(), cursor->lon(), 0.0))) : std::nullopt;
        if (pixel)
            snap_ = source->find({.view = view_,
                                  .cursor = *pixel,
                                  .edited = edited_(),
                                  .dragged = state_ == Dragging ? draggedIndex_() : std::nullopt,
                                  .held = pressed_ || state_ == Dragging});
    }
    if (snap_)
        return hasOwnAltitude_() && !isWhole_() ? snap_->place
                                                : Vec3(snap_->place.lat(), snap_->place.lon(), altitude_);
    const bool steps = (event.modifiers & PIGUI::PIModifierShift) != 0;
    const bool keeps = (event.modifiers & PIGUI::PIModifierControl) != 0;
    if (isWhole_()) return steps ? BaseMouseTool::constrained_(*pos, true, false) : *pos;
    return steps || keeps ? constrained_(*pos, steps, keeps) : *pos;
}

Vec3 BaseMouseTool::constrained_(const Vec3& pos, bool steps, bool keeps) const {
    const auto pivot = isWhole_() ? wholeFrom_() : pivot_();
    if (!pivot) return pos;
    const auto way = halCore::geodesicBetween(*pivot, pos);
    const double bearing = steps ? std::round(way.azimuthAtStart / kStep) * kStep : way.azimuthAtStart;
    const double length = keeps ? keptLength_().value_or(way.meters) : way.meters;
    const Vec3 place = halCore::geodesicFrom(*pivot, bearing, length);
    return {place.lat(), place.lon(), pos.alt()};
}

std::string BaseMouseTool::modifierHint_() const {
    if (!pivot_()) return {};
    std::string text = ". Shift: 15\u00b0 steps";
    return keptLength_() ? text.append(", Control: same length") : text;
}

}  // namespace OverlayEditor
