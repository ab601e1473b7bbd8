#include "gui/XyzEditGUI.h"

#include "geo/OffsetGrid.h"

namespace OverlayEditor {

using halCore::Vec3;
using Quantity = ValueUnitEntry::Quantity;

XyzEditGUI::XyzEditGUI(PanelBody& panel)
    : x_(panel, "X:\tX offset, where +X points East", Quantity::Range),
      y_(panel, "Y:\tY offset, where +Y points North", Quantity::Range),
      z_(panel, "Z:\tZ offset, where +Z points Up", Quantity::Range) {
    x_.setCheck([this](double x) { return refusal_({x, y_.value(), z_.value()}); });
    y_.setCheck([this](double y) { return refusal_({x_.value(), y, z_.value()}); });
    z_.setCheck([this](double z) { return refusal_({x_.value(), y_.value(), z}); });
}

void XyzEditGUI::setPosition(const Vec3& lla) {
    Vec3 offset;
    if (!converter_ || converter_->convertLlaToXyz(lla, offset) != 0) offset = {};
    x_.setValue(offset.x());
    y_.setValue(offset.y());
    z_.setValue(offset.z());
}

std::string_view XyzEditGUI::refusal_(const Vec3& offset) const {
    const bool stands = !converter_ || placeOf(*converter_, offset);
    return stands ? "" : "no place has this offset";
}

std::optional<Vec3> XyzEditGUI::edited() const {
    Vec3 lla;
    if (!converter_ || (!placeEdited() && !z_.edited()) || converter_->convertXyzToLla(offset_(), lla) != 0)
        return std::nullopt;
    return lla;
}

}  // namespace OverlayEditor
