#include "gui/StyleWidgets.h"

#include <utility>

#include "gui/CallChange.h"

namespace OverlayEditor {

LineStyleWidgets::LineStyleWidgets(PIGUI::PICanvas& table, PanelChange change)
    : change_(std::move(change)),
      widthCaption_(&table, "Line Width: \tWidth in pixels to use for drawing the line"),
      widthField_(&table, PIGUI::PISpinnerNormal, callbacks_.make(&LineStyleWidgets::onCmdWidth)),
      widthUnit_(&table, "pixels"),
      colorCaption_(&table, "Line Color:\tColor to use for drawing the line"),
      colorWell_(&table, PIGUI::PIColorWellAlpha, callbacks_.make(&LineStyleWidgets::onCmdColor)),
      colorFiller_(&table, "") {}

void LineStyleWidgets::setColor(std::uint32_t rgba) {
    color_ = rgba;
    colorWell_.setValue(static_cast<std::int32_t>(rgba));
}

void LineStyleWidgets::setWidth(int pixels) {
    width_ = pixels;
    widthField_.setValue(pixels);
}

int LineStyleWidgets::onCmdWidth(PIObject*, void*) {
    width_ = widthField_.getValueInt();
    call(change_);
    return 1;
}

int LineStyleWidgets::onCmdColor(PIObject*, void*) {
    color_ = static_cast<std::uint32_t>(colorWell_.getValueInt());
    call(change_);
    return 1;
}

FillStyleWidgets::FillStyleWidgets(PIGUI::PICanvas& table, PanelChange change)
    : change_(std::move(change)),
      filledCaption_(&table, "Filled:\tColor in shape using the fill color, otherwise draw as wireframe"),
      filledCheck_(&table, "\tColor in shape using the fill color, otherwise draw as wireframe",
                   callbacks_.make(&FillStyleWidgets::onCmdFilled)),
      filledFiller_(&table, ""),
      colorCaption_(&table, "Fill Color:\tColor to use for filling in the shape"),
      colorWell_(&table, PIGUI::PIColorWellAlpha, callbacks_.make(&FillStyleWidgets::onCmdColor)),
      colorFiller_(&table, "") {}

void FillStyleWidgets::setFilled(bool filled) {
    filled_ = filled;
    filledCheck_.setCheck(filled);
}

void FillStyleWidgets::setColor(std::uint32_t rgba) {
    color_ = rgba;
    colorWell_.setValue(static_cast<std::int32_t>(rgba));
}

int FillStyleWidgets::onCmdFilled(PIObject*, void*) {
    filled_ = filledCheck_.isChecked();
    call(change_);
    return 1;
}

int FillStyleWidgets::onCmdColor(PIObject*, void*) {
    color_ = static_cast<std::uint32_t>(colorWell_.getValueInt());
    call(change_);
    return 1;
}

}  // namespace OverlayEditor
