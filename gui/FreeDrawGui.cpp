#include "gui/FreeDrawGui.h"

#include <utility>

#include "gui/CallChange.h"

namespace OverlayEditor {

FreeDrawGui::FreeDrawGui(PIGUI::PICanvas& canvas, PanelChange change)
    : change_(std::move(change)),
      table_(&canvas, 3),
      draw_(table_, [this] { onCmdChange(); }),
      pixelPrecision_(table_,
                      "Pixel Precision:\tNumber of pixels mouse moves before defining a new point in the "
                      "line. Only takes effect when starting new line.",
                      "pixels", 1, [this] { onCmdChange(); }),
      lineStyle_(table_, [this] { onCmdChange(); }) {}

void FreeDrawGui::onCmdChange() {
    call(change_);
}

}  // namespace OverlayEditor
