#include "gui/LlaEditGUI.h"

namespace OverlayEditor {

using Quantity = ValueUnitEntry::Quantity;

LlaEditGUI::LlaEditGUI(PIGUI::PICanvas& table, const Preferences& preferences, const PanelChange& change)
    : lat_(table, "Lat:\tLatitude in specified units", Quantity::Latitude, preferences, change),
      lon_(table, "Lon: \tLongitude in specified units", Quantity::Longitude, preferences, change),
      alt_(table, "Alt:\tAltitude in specified units", Quantity::Altitude, preferences, change) {}

void LlaEditGUI::setPosition(const halCore::Vec3& lla) {
    position_ = lla;
    lat_.setValue(lla.lat());
    lon_.setValue(lla.lon());
    alt_.setValue(lla.alt());
}

std::optional<halCore::Vec3> LlaEditGUI::edited() const {
    const auto lat = lat_.edited();
    const auto lon = lon_.edited();
    const auto alt = alt_.edited();
    if (!lat && !lon && !alt) return std::nullopt;
    return halCore::Vec3(lat.value_or(position_.lat()), lon.value_or(position_.lon()),
                         alt.value_or(position_.alt()));
}

void LlaEditGUI::notifyPrefsUpdate() {
    lat_.notifyPrefsUpdate();
    lon_.notifyPrefsUpdate();
    alt_.notifyPrefsUpdate();
}

void LlaEditGUI::setEnabled(bool enabled) {
    lat_.setEnabled(enabled);
    lon_.setEnabled(enabled);
    alt_.setEnabled(enabled);
}

void LlaEditGUI::setShown(bool shown) {
    lat_.setShown(shown);
    lon_.setShown(shown);
    alt_.setShown(shown);
}

}  // namespace OverlayEditor
