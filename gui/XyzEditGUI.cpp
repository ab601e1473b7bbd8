#include "gui/XyzEditGUI.h"

#include <cmath>

namespace OverlayEditor {

using Quantity = ValueUnitEntry::Quantity;

XyzEditGUI::XyzEditGUI(PIGUI::PICanvas& table, const Preferences& preferences, const PanelChange& change)
    : x_(table, "X:\tX offset, where +X points East", Quantity::Range, preferences, change),
      y_(table, "Y:\tY offset, where +Y points North", Quantity::Range, preferences, change),
      z_(table, "Z:\tZ offset, where +Z points Up", Quantity::Range, preferences, change) {
    x_.setCheck([this](double x) { return refusal_({x, typed_().y(), typed_().z()}); });
    y_.setCheck([this](double y) { return refusal_({typed_().x(), y, typed_().z()}); });
    z_.setCheck([this](double z) { return refusal_({typed_().x(), typed_().y(), z}); });
}

void XyzEditGUI::setPosition(const halCore::Vec3& lla) {
    if (!converter_ || converter_->convertLlaToXyz(lla, offset_) != 0) offset_ = {};
    x_.setValue(offset_.x());
    y_.setValue(offset_.y());
    z_.setValue(offset_.z());
}

halCore::Vec3 XyzEditGUI::typed_() const {
    return {x_.edited().value_or(offset_.x()), y_.edited().value_or(offset_.y()),
            z_.edited().value_or(offset_.z())};
}

std::string_view XyzEditGUI::refusal_(const halCore::Vec3& offset) const {
    constexpr double tolerance = 1e-3;
    halCore::Vec3 lla;
    halCore::Vec3 back;
    if (!converter_) return "";
    // Beyond a pole there is nothing; round more than half of the earth the place has another offset.
    const bool stands = converter_->convertXyzToLla(offset, lla) == 0 &&
                        converter_->convertLlaToXyz(lla, back) == 0 &&
                        std::hypot(back.x() - offset.x(), back.y() - offset.y()) < tolerance;
    return stands ? "" : "no place has this offset";
}

std::optional<halCore::Vec3> XyzEditGUI::edited() const {
    if (!converter_ || (!x_.edited() && !y_.edited() && !z_.edited())) return std::nullopt;
    halCore::Vec3 lla;
    if (converter_->convertXyzToLla(typed_(), lla) != 0) return std::nullopt;
    return lla;
}

void XyzEditGUI::notifyPrefsUpdate() {
    x_.notifyPrefsUpdate();
    y_.notifyPrefsUpdate();
    z_.notifyPrefsUpdate();
}

void XyzEditGUI::setEnabled(bool enabled) {
    x_.setEnabled(enabled);
    y_.setEnabled(enabled);
    z_.setEnabled(enabled);
}

void XyzEditGUI::setShown(bool shown) {
    x_.setShown(shown);
    y_.setShown(shown);
    z_.setShown(shown);
}

}  // namespace OverlayEditor
