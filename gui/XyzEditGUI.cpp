#include "gui/XyzEditGUI.h"

#include "geo/OffsetGrid.h"

namespace OverlayEditor {

using halCore::Vec3;
using Quantity = ValueUnitEntry::Quantity;

XyzEditGUI::XyzEditGUI(PanelBody& panel)
    : x_(panel, "X:\tX offset, where +X points East", Quantity::Range),
      y_(panel, "Y:\tY offset, where +Y points North", Quantity::Range),
      z_(panel, "Z:\tZ offset, where +Z points Up", Quantity::Range),
      nowhere_(panel,
               "No place now\tNo place on the earth has these offsets from where they count from now") {
    x_.setCheck([this](double x) { return refusal_({x, y_.value(), z_.value()}); });
    y_.setCheck([this](double y) { return refusal_({x_.value(), y, z_.value()}); });
    z_.setCheck([this](double z) { return refusal_({x_.value(), y_.value(), z}); });
}

void XyzEditGUI::setPosition(const PlacedPoint& point) {
    Vec3 offset;
    if (point.offset)
        offset = *point.offset;
    else if (!converter_ || converter_->convertLlaToXyz(point.place, offset) != 0)
        offset = {};
    x_.setValue(offset.x());
    y_.setValue(offset.y());
    z_.setValue(offset.z());
    isNowhere_ = !isPlace(point.place);
    nowhere_.setShown(shown_ && isNowhere_);
}

void XyzEditGUI::setTaker(const Taker& taker) {
    for (ValueUnitEntry* entry : {&x_, &y_, &z_})
        entry->setTaker([taker](const std::string& text, std::string& reason) {
            return taker(text, {UTILS::PlainPairs::None}, reason);
        });
}

void XyzEditGUI::setShown(bool shown) {
    PointEditor::setShown(shown);
    shown_ = shown;
    nowhere_.setShown(shown_ && isNowhere_);
}

std::string_view XyzEditGUI::refusal_(const Vec3& offset) const {
    const bool stands = !converter_ || placeOf(*converter_, offset);
    return stands ? "" : "no place has this offset";
}

std::optional<PlacedPoint> XyzEditGUI::edited() const {
    const auto place =
        converter_ && (placeEdited() || z_.edited()) ? placeOf(*converter_, offset_()) : std::nullopt;
    return place ? std::optional(PlacedPoint(offset_(), *place)) : std::nullopt;
}

}  // namespace OverlayEditor
