#include "gui/ValueUnitEntry.h"

#include <cmath>

#include "common/Notify.h"
#include "common/Strings.h"
#include "geo/Farthest.h"
#include "geo/Wgs84.h"
#include "gui/Captions.h"

namespace OverlayEditor {

std::string_view ValueUnitEntry::refusal(Quantity quantity, double value) {
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
            return std::abs(value) > halCore::kFarthestMeters ? "this is beyond a million kilometers" : "";
        default:
            return "";
    }
}

ValueUnitEntry::ValueUnitEntry(PanelBody& panel, const std::string& caption, Quantity quantity)
    : PanelRow(panel, caption, PIGUI::PITextFieldNormal, ""),
      preferences_(panel.preferences()),
      quantity_(quantity),
      name_(captionName(caption)) {
    unit_.setValue(unitText_());
    panel.add(*this);
}

void ValueUnitEntry::setValue(double value) {
    edited_ = false;
    // Other fields of the panel were edited: the text waits for its correction.
    const std::string before = format_();
    if (value != value_) {
        given_ = value;
        typedUnit_ = UTILS::UnitType_t::Invalid;
    }
    value_ = value;
    if (refused_.stands() && format_() == before) return;
    refused_.forget();
    field_.setValue(format_());
}

void ValueUnitEntry::notifyPrefsUpdate() {
    refused_.forget();
    typedUnit_ = UTILS::UnitType_t::Invalid;
    unit_.setValue(unitText_());
    field_.setValue(format_());
}

bool ValueUnitEntry::takeEdit_() {
    const std::string text = field_.getValueText();
    // Left as it was, it keeps the digits that are not shown.
    if (text == format_() || refused_.is(text)) {
        refused_.forget();
        field_.setValue(format_());
        return false;
    }
    double value = 0.0;
    std::string remark;
    auto unit = UTILS::UnitType_t::Invalid;
    const bool isValue = parse_(text, value, remark, unit) == 0;
    if (isValue && text == format_(given_)) value = given_;
    std::string reason = isValue ? std::string(refusal(quantity_, value)) : remark;
    if (isValue && reason.empty() && check_) reason = check_(value);
    if (!isValue && taker_) {
        std::string taken;
        if (taker_(text, taken)) {
            refused_.forget();
            return true;
        }
        // What looks like numbers may be a position to a field that wants one.
        if (!taken.empty() && isCoordinate_()) reason = taken;
    }
    if (!reason.empty()) {
        std::string message = name_ + ": Invalid value \"";
        message.append(UTILS::excerpt(text)).append("\": ").append(reason);
        message.append("; understood are ").append(example_()).append("; still ").append(format_());
        if (!refused_.refuse(text, message)) field_.setValue(format_());
        return false;
    }
    value_ = value;
    typedUnit_ = unit;
    edited_ = true;
    refused_.forget();
    field_.setValue(format_());
    if (!remark.empty())
        halNotify::notify(halNotify::Warning) << name_ << ": \"" << UTILS::excerpt(text) << "\" is " << remark
                                              << ", and taken as " << format_();
    return true;
}

std::string_view ValueUnitEntry::example_() const {
    switch (quantity_) {
        case Quantity::Altitude:
            return "\"120.5\" and \"300 ft\"";
        case Quantity::Angle:
            return UTILS::unitsGetUnits(preferences_.unitsProvider()->angleUnits()) == halCore::Units::DEGREES
                       ? "\"45.5\" and \"45 30 0\""
                       : "\"0.5\" and \"45.5 deg\"";
        case Quantity::Latitude:
            return "\"21 18 30 N\" and \"21.5\"";
        case Quantity::Longitude:
            return "\"157 30 0 W\" and \"-157.5\"";
        default:
            return "\"2.5\" and \"2.5 nm\"";
    }
}

std::string ValueUnitEntry::format_(double value) const {
    const auto& units = *preferences_.unitsProvider();
    switch (quantity_) {
        case Quantity::Range:
        case Quantity::Radius:
        case Quantity::Size:
            return units.formatRange(value);
        case Quantity::Altitude:
            return units.formatAltitude(value);
        case Quantity::Angle:
            return units.formatAngle(value);
        case Quantity::Latitude:
            return units.formatLatitude(value);
        case Quantity::Longitude:
            return units.formatLongitude(value);
    }
    return {};
}

int ValueUnitEntry::parse_(const std::string& text, double& value, std::string& remark,
                           UTILS::UnitType_t& unit) const {
    const auto& units = *preferences_.unitsProvider();
    switch (quantity_) {
        case Quantity::Range:
        case Quantity::Radius:
        case Quantity::Size:
            return units.parseRange(text, value, &remark, unit);
        case Quantity::Altitude:
            return units.parseAltitude(text, value, &remark);
        case Quantity::Angle:
            return units.parseAngle(text, value, &remark);
        case Quantity::Latitude:
            return units.parseLatitude(text, value, &remark);
        case Quantity::Longitude:
            return units.parseLongitude(text, value, &remark);
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
