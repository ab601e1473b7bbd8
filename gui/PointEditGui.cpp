#include "gui/PointEditGui.h"

#include <initializer_list>
#include <utility>

#include "common/Notify.h"
#include "common/Strings.h"
#include "geo/OffsetGrid.h"

namespace OverlayEditor {

PointEditGui::PointEditGui(PanelBody& panel)
    : preferences_(panel.preferences()), lla_(panel), xyz_(panel), mgrs_(panel) {
    xyz_.setShown(false);
    mgrs_.setShown(false);
    for (PointEditor* editor : std::initializer_list<PointEditor*>{&lla_, &xyz_, &mgrs_})
        editor->setTaker([this](const std::string& text, UTILS::PlainPairs plain, std::string& reason) {
            return take_(text, plain, reason);
        });
    choose_();
    panel.add(*this);
}

void PointEditGui::setPosition(const PlacedPoint& point) {
    taken_.clear();
    position_ = point;
    current_->setPosition(point);
}

void PointEditGui::setPointConverter(const PointConverter* converter) {
    position_ = position();
    converter_ = converter;
    xyz_.setPointConverter(converter);
    choose_();
}

void PointEditGui::setEnabled(bool enabled) {
    lla_.setEnabled(enabled);
    xyz_.setEnabled(enabled);
    mgrs_.setEnabled(enabled);
}

void PointEditGui::choose_() {
    PointEditor* chosen = &lla_;
    if (preferences_.coordinateSystem() == Preferences::MGRS) chosen = &mgrs_;
    if (converter_) chosen = &xyz_;
    if (chosen == current_) return;
    position_ = position();
    current_->setShown(false);
    chosen->setShown(true);
    current_ = chosen;
    current_->setPosition(position_);
}

bool PointEditGui::take_(const std::string& text, UTILS::PlainPairs plain, std::string& reason) {
    if (const auto offsets = readOffsets_(text)) {
        taken_.assign(1, *offsets);
        return true;
    }
    UTILS::TypedPositions typed = UTILS::readTypedPositions(text, plain);
    reason = std::move(typed.reason);
    if (typed.positions.empty()) return false;
    if (typed.positions.size() > 1 && !allowsSeveral_) {
        reason = "these are several positions, and here is one";
        return false;
    }
    std::vector<PlacedPoint> taken;
    const double height = position().place.alt();
    for (const UTILS::TypedPosition& each : typed.positions) {
        double altitude = height;
        if (!each.altitude.empty() &&
            preferences_.unitsProvider()->parseAltitude(each.altitude, altitude, &reason) != 0) {
            reason.insert(0, "the altitude \"" + UTILS::excerpt(each.altitude) + "\": ");
            return false;
        }
        if (each.lonWrapped)
            halNotify::notify(halNotify::Warning)
                << "\"" << UTILS::excerpt(text) << "\": its longitude is beyond 180 degrees, and taken as "
                << preferences_.unitsProvider()->formatLongitude(each.lon);
        taken.emplace_back(halCore::Vec3(each.lat, each.lon, altitude));
    }
    taken_ = std::move(taken);
    return true;
}

std::optional<PlacedPoint> PointEditGui::readOffsets_(const std::string& text) const {
    const std::size_t comma = text.find_first_of(",;");
    if (!converter_ || comma == std::string::npos) return std::nullopt;
    const std::size_t second = std::min(text.find_first_of(",;", comma + 1), text.size());
    PlacedPoint point = position();
    halCore::Vec3 offset = point.offset.value_or(halCore::Vec3());
    const auto& units = *preferences_.unitsProvider();
    double x = 0.0;
    double y = 0.0;
    double z = offset.z();
    const std::string third = second < text.size() ? text.substr(second + 1) : std::string();
    if (units.parseRange(text.substr(0, comma), x) != 0 ||
        units.parseRange(text.substr(comma + 1, second - comma - 1), y) != 0 ||
        (!third.empty() && units.parseRange(third, z) != 0))
        return std::nullopt;
    offset.set(x, y, z);
    const auto place = placeOf(*converter_, offset);
    return place ? std::optional(PlacedPoint(offset, *place)) : std::nullopt;
}

}  // namespace OverlayEditor
