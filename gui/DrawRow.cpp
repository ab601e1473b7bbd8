#include "gui/DrawRow.h"

#include <utility>

#include "gui/CallChange.h"

namespace OverlayEditor {

DrawRow::DrawRow(PIGUI::PICanvas& table, PanelChange change)
    : change_(std::move(change)),
      caption_(&table, "Draw:\tDraw or hide this shape"),
      check_(&table, "\tDraw or hide this shape", callbacks_.make(&DrawRow::onCmdDraw)),
      filler_(&table, "") {}

void DrawRow::setDrawCheck(bool drawn) {
    drawn_ = drawn;
    check_.setCheck(drawn);
}

int DrawRow::onCmdDraw(PIObject*, void*) {
    drawn_ = check_.isChecked();
    call(change_);
    return 1;
}

}  // namespace OverlayEditor
