#include "gui/StyleWidgets.h"

#include <utility>

#include "gui/CallChange.h"

namespace OverlayEditor {

ColorRow::ColorRow(PIGUI::PICanvas& table, const std::string& caption, PanelChange change)
    : change_(std::move(change)),
      caption_(&table, caption),
      well_(&table, PIGUI::PIColorWellAlpha, callbacks_.make(&ColorRow::onCmdColor)),
      filler_(&table, "") {}

void ColorRow::setColor(std::uint32_t rgba) {
    color_ = rgba;
    well_.setValue(static_cast<std::int32_t>(rgba));
}

int ColorRow::onCmdColor(PIObject*, void*) {
    color_ = static_cast<std::uint32_t>(well_.getValueInt());
    call(change_);
    return 1;
}

LineStyleWidgets::LineStyleWidgets(PIGUI::PICanvas& table, const PanelChange& change)
    : width_(table, "Line Width: \tWidth in pixels to use for drawing the line", "pixels", 0, change),
      color_(table, "Line Color:\tColor to use for drawing the line", change) {}

FillStyleWidgets::FillStyleWidgets(PIGUI::PICanvas& table, PanelChange change)
    : change_(std::move(change)),
      filledCaption_(&table, "Filled:\tColor in shape using the fill color, otherwise draw as wireframe"),
      filledCheck_(&table, "\tColor in shape using the fill color, otherwise draw as wireframe",
                   callbacks_.make(&FillStyleWidgets::onCmdFilled)),
      filledFiller_(&table, ""),
      color_(table, "Fill Color:\tColor to use for filling in the shape", change_) {}

void FillStyleWidgets::setFilled(bool filled) {
    filled_ = filled;
    filledCheck_.setCheck(filled);
}

int FillStyleWidgets::onCmdFilled(PIObject*, void*) {
    filled_ = filledCheck_.isChecked();
    call(change_);
    return 1;
}

}  // namespace OverlayEditor
