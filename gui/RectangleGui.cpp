#include "gui/RectangleGui.h"

#include <utility>

namespace OverlayEditor {

using halCore::Vec3;

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

Vec3 RectangleGui::anchor() const {
    Vec3 anchor = anchor_.position();
    // A rectangle is flat; the altitude typed last holds.
    if (const auto corner = corner_.edited()) anchor.setAlt(corner->alt());
    return anchor;
}

RectangleGeometry::Size RectangleGui::size_() const {
    if (!cornerIsSource_()) return {width_.value(), height_.value()};
    const auto size = RectangleGeometry::calcWidthHeight(anchor(), getLastCorner());
    return isAnchorCenter() ? RectangleGeometry::Size{2.0 * size.width, 2.0 * size.height} : size;
}

Vec3 RectangleGui::getFirstCorner() const {
    return isAnchorCenter() ? RectangleGeometry::cornersAbout(anchor(), size_()).first : anchor();
}

Vec3 RectangleGui::getLastCorner() const {
    if (cornerIsSource_()) {
        Vec3 corner = corner_.position();
        corner.setAlt(anchor().alt());
        return corner;
    }
    const auto size = size_();
    return isAnchorCenter() ? RectangleGeometry::cornersAbout(anchor(), size).last
                            : RectangleGeometry::calcCornerPoint(anchor(), size.width, size.height);
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
