#include "gui/LlaEditGUI.h"

namespace OverlayEditor {

using Quantity = ValueUnitEntry::Quantity;

LlaEditGUI::LlaEditGUI(PanelBody& panel)
    : lat_(panel, "Lat:\tLatitude in specified units", Quantity::Latitude),
      lon_(panel, "Lon: \tLongitude in specified units", Quantity::Longitude),
      alt_(panel, "Alt:\tAltitude in specified units", Quantity::Altitude) {}

void LlaEditGUI::setPosition(const PlacedPoint& point) {
    const halCore::Vec3& lla = point.place;
    lat_.setValue(lla.lat());
    lon_.setValue(lla.lon());
    alt_.setValue(lla.alt());
}

void LlaEditGUI::setTaker(const Taker& taker) {
    const auto pass = [&taker](ValueUnitEntry& entry, halCore::AngleKind kind) {
        entry.setTaker([taker, kind](const std::string& text, std::string& reason) {
            return taker(text, {UTILS::PlainPairs::All, kind}, reason);
        });
    };
    pass(lat_, halCore::AngleKind::Latitude);
    pass(lon_, halCore::AngleKind::Longitude);
    pass(alt_, halCore::AngleKind::Any);
}

std::optional<PlacedPoint> LlaEditGUI::edited() const {
    if (!placeEdited() && !alt_.edited()) return std::nullopt;
    return PlacedPoint(halCore::Vec3(lat_.value(), lon_.value(), alt_.value()));
}

}  // namespace OverlayEditor
