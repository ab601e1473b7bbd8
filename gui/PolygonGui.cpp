#include "gui/PolygonGui.h"

#include <utility>

#include "gui/CallChange.h"

namespace OverlayEditor {

PolygonGui::PolygonGui(PolygonShape::Subtype subtype, const Preferences& preferences, PIGUI::PICanvas& canvas,
                       PanelChange change)
    : change_(std::move(change)),
      table_(&canvas, 3),
      draw_(table_, [this] { onCmdChange(); }),
      points_(table_, preferences, subtype == PolygonShape::Polygon),
      lineStyle_(table_, [this] { onCmdChange(); }),
      fillStyle_(table_, [this] { onCmdChange(); }) {}

void PolygonGui::onCmdChange() {
    call(change_);
}

}  // namespace OverlayEditor
