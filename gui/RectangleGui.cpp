#include "gui/RectangleGui.h"

#include <utility>

namespace OverlayEditor {

using halCore::Vec3;

namespace {

PlacedPoint atHeightOf(const PlacedPoint& other, PlacedPoint point) {
    point.place.setAlt(other.place.alt());
    if (point.offset && other.offset) point.offset->setZ(other.offset->z());
    return point;
}

}  // namespace

RectangleGui::RectangleGui(const Preferences& preferences, PIGUI::PICanvas& canvas, PanelChange change)
    : PanelOf(preferences, canvas, std::move(change)),
      anchorChoice_(*this, "Anchor Point:\tStarting point of rectangle", "Center\tCenter of the rectangle",
                    "Corner 1\tFirst corner of the rectangle"),
      anchor_(*this),
      sourceChoice_(*this, "", "Width/Height\tSpecify the rectangle by its width/height",
                    "Corner 2\tSpecify the rectangle by its corner point"),
      width_(*this, "Width:         \tWidth of the rectangle", ValueUnitEntry::Quantity::Size),
      height_(*this, "Height:\tHeight of the rectangle", ValueUnitEntry::Quantity::Size),
      cornerHeading_(*this, "Corner Point"),
      corner_(*this),
      lineStyle_(*this),
      fillStyle_(*this) {
    enableSource_();
}

void RectangleGui::updateWidthHeight(double width, double height) {
    width_.setValue(width);
    height_.setValue(height);
}

bool RectangleGui::edited() const {
    return anchor_.edited() || corner_.edited() || width_.edited() || height_.edited();
}

bool RectangleGui::spanned() const {
    return corner_.placeEdited() || width_.edited() || height_.edited();
}

bool RectangleGui::reshaped() const {
    return anchor_.placeEdited() || spanned();
}

PlacedPoint RectangleGui::anchor() const {
    // A rectangle is flat; the altitude typed last holds.
    const auto corner = corner_.edited();
    return corner ? atHeightOf(*corner, anchor_.position()) : anchor_.position();
}

RectangleGeometry::Size RectangleGui::size_() const {
    if (!cornerIsSource_()) return {width_.value(), height_.value()};
    const auto size = RectangleGeometry::calcWidthHeight(anchor().place, getLastCorner().place);
    return isAnchorCenter() ? RectangleGeometry::Size{2.0 * size.width, 2.0 * size.height} : size;
}

PlacedPoint RectangleGui::getFirstCorner() const {
    if (!isAnchorCenter()) return anchor();
    return PlacedPoint(RectangleGeometry::cornersAbout(anchor().place, size_()).first);
}

PlacedPoint RectangleGui::getLastCorner() const {
    if (cornerIsSource_()) return atHeightOf(anchor(), corner_.position());
    const auto size = size_();
    const Vec3 from = anchor().place;
    return PlacedPoint(isAnchorCenter() ? RectangleGeometry::cornersAbout(from, size).last
                                        : RectangleGeometry::calcCornerPoint(from, size.width, size.height));
}

void RectangleGui::enableSource_() {
    width_.setEnabled(!cornerIsSource_());
    height_.setEnabled(!cornerIsSource_());
    corner_.setEnabled(cornerIsSource_());
}

void RectangleGui::onCmdChange() {
    enableSource_();
    PanelOf::onCmdChange();
}

}  // namespace OverlayEditor
