// SPDX-FileCopyrightText: 2026 the OverlayEditor authors
// SPDX-License-Identifier: MIT

#include "gui/XyzEditGUI.h"

namespace OverlayEditor {

using Quantity = ValueUnitEntry::Quantity;

XyzEditGUI::XyzEditGUI(PIGUI::PICanvas& table, const Preferences& preferences, const PanelChange& change)
    : x_(table, "X:\tX offset, where +X points East", Quantity::Range, preferences, change),
      y_(table, "Y:\tY offset, where +Y points North", Quantity::Range, preferences, change),
      z_(table, "Z:\tZ offset, where +Z points Up", Quantity::Range, preferences, change) {}

void XyzEditGUI::setPosition(const halCore::Vec3& lla) {
    if (!converter_ || converter_->convertLlaToXyz(lla, offset_) != 0) offset_ = {};
    x_.setValue(offset_.x());
    y_.setValue(offset_.y());
    z_.setValue(offset_.z());
}

std::optional<halCore::Vec3> XyzEditGUI::edited() const {
    const auto x = x_.edited();
    const auto y = y_.edited();
    const auto z = z_.edited();
    if (!converter_ || (!x && !y && !z)) return std::nullopt;
    halCore::Vec3 lla;
    const halCore::Vec3 offset(x.value_or(offset_.x()), y.value_or(offset_.y()), z.value_or(offset_.z()));
    if (converter_->convertXyzToLla(offset, lla) != 0) return std::nullopt;
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
