#include "gui/ValueUnitEntry.h"

#include <utility>

#include "common/Notify.h"
#include "gui/CallChange.h"
#include "gui/Captions.h"

namespace OverlayEditor {

ValueUnitEntry::ValueUnitEntry(PIGUI::PICanvas& table, const std::string& caption, Quantity quantity,
                               const Preferences& preferences, PanelChange change)
    : quantity_(quantity),
      preferences_(preferences),
      change_(std::move(change)),
      name_(captionName(caption)),
      caption_(&table, caption),
      field_(&table, PIGUI::PITextFieldNormal, callbacks_.make(&ValueUnitEntry::onCmdEdit)),
      unitLabel_(&table, unit_()) {
    shownText_ = format_();
    field_.setValue(shownText_);
}

void ValueUnitEntry::setValue(double value) {
    value_ = value;
    edited_ = false;
    std::string text = format_();
    // A text that stays the same is left alone: the user may be typing in the field.
    if (text == shownText_) return;
    shownText_ = std::move(text);
    field_.setValue(shownText_);
}

void ValueUnitEntry::notifyPrefsUpdate() {
    unitLabel_.setValue(unit_());
    shownText_ = format_();
    field_.setValue(shownText_);
}

void ValueUnitEntry::setShown(bool shown) {
    for (PIGUI::PIWindow* cell :
         {static_cast<PIGUI::PIWindow*>(&caption_), static_cast<PIGUI::PIWindow*>(&field_),
          static_cast<PIGUI::PIWindow*>(&unitLabel_)})
        shown ? cell->show() : cell->hide();
}

int ValueUnitEntry::onCmdEdit(PIObject*, void*) {
    const std::string text = field_.getValueText();
    if (text == shownText_) return 1;
    double value = 0.0;
    std::string error;
    if (parse_(text, value, error) != 0) {
        halNotify::notify(halNotify::Warning) << name_ << ": " << error;
        field_.setValue(shownText_);
        return 1;
    }
    value_ = value;
    edited_ = true;
    shownText_ = format_();
    field_.setValue(shownText_);
    call(change_);
    return 1;
}

std::string ValueUnitEntry::format_() const {
    const auto& units = *preferences_.unitsProvider();
    switch (quantity_) {
        case Quantity::Range:
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

std::string ValueUnitEntry::unit_() const {
    const auto& units = *preferences_.unitsProvider();
    UTILS::UnitType_t type = units.geodeticUnits();
    if (quantity_ == Quantity::Range) type = units.rangeUnits();
    if (quantity_ == Quantity::Altitude) type = units.altitudeUnits();
    if (quantity_ == Quantity::Angle) type = units.angleUnits();
    return std::string(UTILS::unitsGetAbbreviation(type));
}

}  // namespace OverlayEditor
