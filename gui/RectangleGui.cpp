#include "gui/RectangleGui.h"

#include <utility>

#include "gui/CallChange.h"

namespace OverlayEditor {

using halCore::Vec3;

RectangleGui::RectangleGui(const Preferences& preferences, PIGUI::PICanvas& canvas, PanelChange change)
    : change_(std::move(change)),
      table_(&canvas, 3),
      draw_(table_, [this] { onCmdChange(); }),
      anchorCaption_(&table_, "Anchor Point:\tStarting point of rectangle"),
      anchorChoice_(&table_),
      centerButton_(&anchorChoice_, "Center\tCenter of the rectangle",
                    callbacks_.make(&RectangleGui::onCmdAnchor)),
      cornerButton_(&anchorChoice_, "Corner 1\tFirst corner of the rectangle",
                    callbacks_.make(&RectangleGui::onCmdAnchor)),
      anchorFiller_(&table_, ""),
      anchor_(table_, preferences, [this] { onCmdChange(); }),
      sourceCaption_(&table_, ""),
      sourceChoice_(&table_),
      sizeButton_(&sourceChoice_, "Width/Height\tSpecify the rectangle by its width/height",
                  callbacks_.make(&RectangleGui::onCmdSource)),
      corner2Button_(&sourceChoice_, "Corner 2\tSpecify the rectangle by its corner point",
                     callbacks_.make(&RectangleGui::onCmdSource)),
      sourceFiller_(&table_, ""),
      width_(table_, "Width:         \tWidth of the rectangle", ValueUnitEntry::Quantity::Size, preferences,
             [this] { onCmdChange(); }),
      height_(table_, "Height:\tHeight of the rectangle", ValueUnitEntry::Quantity::Size, preferences,
              [this] { onCmdChange(); }),
      cornerHeading_(table_, "Corner Point"),
      corner_(table_, preferences, [this] { onCmdChange(); }),
      lineStyle_(table_, [this] { onCmdChange(); }),
      fillStyle_(table_, [this] { onCmdChange(); }) {
    setAnchorCenter(anchorCenter_);
    sizeButton_.setCheck(true);
    enableSource_();
}

void RectangleGui::setAnchorCenter(bool center) {
    anchorCenter_ = center;
    centerButton_.setCheck(center);
    cornerButton_.setCheck(!center);
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
    if (!cornerIsSource_) return {width_.value(), height_.value()};
    const auto size = RectangleGeometry::calcWidthHeight(anchor(), getLastCorner());
    return anchorCenter_ ? RectangleGeometry::Size{2.0 * size.width, 2.0 * size.height} : size;
}

Vec3 RectangleGui::getFirstCorner() const {
    return anchorCenter_ ? RectangleGeometry::cornersAbout(anchor(), size_()).first : anchor();
}

Vec3 RectangleGui::getLastCorner() const {
    if (cornerIsSource_) {
        Vec3 corner = corner_.position();
        corner.setAlt(anchor().alt());
        return corner;
    }
    const auto size = size_();
    return anchorCenter_ ? RectangleGeometry::cornersAbout(anchor(), size).last
                         : RectangleGeometry::calcCornerPoint(anchor(), size.width, size.height);
}

void RectangleGui::setPointConverter(PointConverter* converter) {
    anchor_.setPointConverter(converter);
    corner_.setPointConverter(converter);
}

void RectangleGui::notifyPrefsUpdate() {
    anchor_.notifyPrefsUpdate();
    corner_.notifyPrefsUpdate();
    width_.notifyPrefsUpdate();
    height_.notifyPrefsUpdate();
}

void RectangleGui::enableSource_() {
    width_.setEnabled(!cornerIsSource_);
    height_.setEnabled(!cornerIsSource_);
    corner_.setEnabled(cornerIsSource_);
}

int RectangleGui::onCmdAnchor(PIObject*, void*) {
    setAnchorCenter(centerButton_.isChecked());
    onCmdChange();
    return 1;
}

int RectangleGui::onCmdSource(PIObject*, void*) {
    cornerIsSource_ = corner2Button_.isChecked();
    enableSource_();
    onCmdChange();
    return 1;
}

void RectangleGui::onCmdChange() {
    call(change_);
}

}  // namespace OverlayEditor
