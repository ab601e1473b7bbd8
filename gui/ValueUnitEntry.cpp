#include "gui/ValueUnitEntry.h"

#include <cmath>

#include "common/Notify.h"
#include "common/Strings.h"
#include "geo/Wgs84.h"
#include "gui/Captions.h"

namespace OverlayEditor {

namespace {

using Quantity = ValueUnitEntry::Quantity;

/// Why a shape cannot have the value; empty when it can.
std::string_view refusal(Quantity quantity, double value) {
    constexpr double farthest = 1e9;
    switch (quantity) {
        case Quantity::Radius:
            if (value <= 0.0) return "a radius is greater than 0";
            [[fallthrough]];
        case Quantity::Size:
            return std::abs(value) > halCore::wgs84::halfMeridian
                       ? "this reaches round more than half of the earth"
                       : "";
        case Quantity::Range:
        case Quantity::Altitude:
            return std::abs(value) > farthest ? "this is beyond a million kilometers" : "";
        default:
            return "";
    }
}

}  // namespace

ValueUnitEntry::ValueUnitEntry(PanelBody& panel, const std::string& caption, Quantity quantity)
    : PanelRow(panel, caption, PIGUI::PITextFieldNormal, ""),
      preferences_(panel.preferences()),
      quantity_(quantity),
      name_(captionName(caption)) {
    unit_.setValue(unitText_());
    panel.add(*this);
}

void ValueUnitEntry::setValue(double value) {
    value_ = value;
    edited_ = false;
    field_.setValue(format_());
}

void ValueUnitEntry::notifyPrefsUpdate() {
    unit_.setValue(unitText_());
    field_.setValue(format_());
}

bool ValueUnitEntry::takeEdit_() {
    const std::string text = field_.getValueText();
    // Left as it was, it keeps the digits that are not shown.
    if (text == format_()) return false;
    double value = 0.0;
    std::string error;
    if (parse_(text, value, error) == 0) {
        std::string_view reason = refusal(quantity_, value);
        if (reason.empty() && check_) reason = check_(value);
        if (!reason.empty())
            error.append("Invalid value \"").append(UTILS::excerpt(text)).append("\": ").append(reason);
    }
    const bool taken = error.empty();
    if (taken) {
        value_ = value;
        edited_ = true;
    } else {
        halNotify::notify(halNotify::Warning) << name_ << ": " << error;
    }
    field_.setValue(format_());
    return taken;
}

std::string ValueUnitEntry::format_() const {
    const auto& units = *preferences_.unitsProvider();
    switch (quantity_) {
        case Quantity::Range:
        case Quantity::Radius:
        case Quantity::Size:
            return units.formatRange(value_);
        case Quantity::Altitude:
            return units.formatAltitude(value_);
        case Quantity::Angle:
            return units.formatAngle(value_);
        case Quantity::Latitude:
            return units.formatLatitude(value_);
        case Quantity::Longitude:
            return units.formatLongitude(value_);
    }
    return {};
}

int ValueUnitEntry::parse_(const std::string& text, double& value, std::string& error) const {
    const auto& units = *preferences_.unitsProvider();
    switch (quantity_) {
        case Quantity::Range:
        case Quantity::Radius:
        case Quantity::Size:
            return units.parseRange(text, value, &error);
        case Quantity::Altitude:
            return units.parseAltitude(text, value, &error);
        case Quantity::Angle:
            return units.parseAngle(text, value, &error);
        case Quantity::Latitude:
            return units.parseLatitude(text, value, &error);
        case Quantity::Longitude:
            return units.parseLongitude(text, value, &error);
    }
    return 1;
}

std::string ValueUnitEntry::unitText_() const {
    const auto& units = *preferences_.unitsProvider();
    switch (quantity_) {
        case Quantity::Range:
        case Quantity::Radius:
        case Quantity::Size:
            return std::string(UTILS::unitsGetAbbreviation(units.rangeUnits()));
        case Quantity::Altitude:
            return std::string(UTILS::unitsGetAbbreviation(units.altitudeUnits()));
        case Quantity::Angle:
            return std::string(UTILS::unitsGetAbbreviation(units.angleUnits()));
        case Quantity::Latitude:
        case Quantity::Longitude:
            return std::string(UTILS::unitsGetAbbreviation(units.geodeticUnits()));
    }
    return {};
}

}  // namespace OverlayEditor
