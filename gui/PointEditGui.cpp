#include "gui/PointEditGui.h"

#include <array>
#include <initializer_list>
#include <utility>

#include "common/Notify.h"
#include "common/Strings.h"
#include "geo/OffsetGrid.h"
#include "geo/TypedText.h"

namespace OverlayEditor {

using Quantity = ValueUnitEntry::Quantity;

PointEditGui::PointEditGui(PanelBody& panel)
    : preferences_(panel.preferences()), lla_(panel), xyz_(panel), mgrs_(panel) {
    xyz_.setShown(false);
    mgrs_.setShown(false);
    for (PointEditor* editor : std::initializer_list<PointEditor*>{&lla_, &xyz_, &mgrs_})
        editor->setTaker([this](const std::string& text, UTILS::TypedInto into, std::string& reason) {
            return take_(text, into, reason);
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

bool PointEditGui::take_(const std::string& text, UTILS::TypedInto into, std::string& reason) {
    if (const auto offsets = readOffsets_(text)) {
        taken_.assign(1, *offsets);
        return true;
    }
    UTILS::TypedPositions typed = UTILS::readTypedPositions(text, into);
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
            (preferences_.unitsProvider()->parseAltitude(each.altitude, altitude, &reason) != 0 ||
             !(reason = ValueUnitEntry::refusal(Quantity::Altitude, altitude)).empty())) {
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
    const auto cells = UTILS::typedCells(UTILS::plainText(text));
    if (!converter_ || cells.size() < 2 || cells.size() > 3) return std::nullopt;
    PlacedPoint point = position();
    halCore::Vec3 offset = point.offset.value_or(halCore::Vec3());
    std::array values{0.0, 0.0, offset.z()};
    for (std::size_t i = 0; i < cells.size(); ++i)
        if (preferences_.unitsProvider()->parseRange(cells[i], values[i]) != 0 ||
            !ValueUnitEntry::refusal(Quantity::Range, values[i]).empty())
            return std::nullopt;
    offset.set(values[0], values[1], values[2]);
    const auto place = placeOf(*converter_, offset);
    return place ? std::optional(PlacedPoint(offset, *place)) : std::nullopt;
}

}  // namespace OverlayEditor
