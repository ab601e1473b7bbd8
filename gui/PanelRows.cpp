#include "gui/PanelRows.h"

#include "gui/Captions.h"

namespace OverlayEditor {

CheckRow::CheckRow(PanelBody& panel, const std::string& caption)
    : PanelRow(panel, caption, tooltipOf(caption), "") {}

void CheckRow::setValue(bool checked) {
    value_ = checked;
    field_.setCheck(checked);
}

bool CheckRow::takeEdit_() {
    value_ = field_.isChecked();
    return true;
}

NumberRow::NumberRow(PanelBody& panel, const std::string& caption, const std::string& unit, int least,
                     int most)
    : panel_(panel),
      caption_(panel.table(), caption),
      pair_(panel.table()),
      field_(&pair_, PIGUI::PISpinnerNormal, callbacks_.make(&NumberRow::onCmdEdit)),
      unit_(&pair_, unit),
      filler_(panel.table(), ""),
      number_(field_, captionName(caption), least, most) {}

int NumberRow::onCmdEdit(PIObject*, void*) {
    if (number_.take()) panel_.onCmdChange();
    return 1;
}

ColorRow::ColorRow(PanelBody& panel, const std::string& caption)
    : PanelRow(panel, caption, PIGUI::PIColorWellAlpha, "") {}

void ColorRow::setValue(std::uint32_t rgba) {
    value_ = rgba;
    field_.setValue(static_cast<std::int32_t>(rgba));
}

bool ColorRow::takeEdit_() {
    value_ = static_cast<std::uint32_t>(field_.getValueInt());
    return true;
}

ChoiceRow::ChoiceRow(PanelBody& panel, const std::string& caption, const std::string& first,
                     const std::string& second)
    : panel_(panel),
      caption_(panel.table(), caption),
      buttons_(panel.table()),
      first_(&buttons_, first, callbacks_.make(&ChoiceRow::onCmdChoice)),
      second_(&buttons_, second, callbacks_.make(&ChoiceRow::onCmdChoice)),
      filler_(panel.table(), "") {
    first_.check();
}

void ChoiceRow::setFirst(bool first) {
    if (first == isFirst_) return;
    isFirst_ = first;
    first_.setCheck(first);
    second_.setCheck(!first);
}

int ChoiceRow::onCmdChoice(PIObject*, void*) {
    isFirst_ = first_.isChecked();
    panel_.onCmdChange();
    return 1;
}

}  // namespace OverlayEditor
