#include "gui/OrbitGui.h"

#include <utility>

#include "gui/CallChange.h"

namespace OverlayEditor {

OrbitGui::OrbitGui(const Preferences& preferences, PIGUI::PICanvas& canvas, PanelChange change)
    : change_(std::move(change)),
      table_(&canvas, 3),
      draw_(table_, [this] { onCmdChange(); }),
      heading1_(table_, "Center 1:\tCenter point for first end of the orbit shape"),
      center1_(table_, preferences, [this] { onCmdChange(); }),
      heading2_(table_, "Center 2:\tCenter point for other end of the orbit shape"),
      center2_(table_, preferences, [this] { onCmdChange(); }),
      radius_(table_, "Radius:\tRadius for this shape", ValueUnitEntry::Quantity::Radius, preferences,
              [this] { onCmdChange(); }),
      lineStyle_(table_, [this] { onCmdChange(); }),
      fillStyle_(table_, [this] { onCmdChange(); }) {}

void OrbitGui::setPointConverter(PointConverter* converter) {
    center1_.setPointConverter(converter);
    center2_.setPointConverter(converter);
}

void OrbitGui::notifyPrefsUpdate() {
    center1_.notifyPrefsUpdate();
    center2_.notifyPrefsUpdate();
    radius_.notifyPrefsUpdate();
}

void OrbitGui::onCmdChange() {
    call(change_);
}

}  // namespace OverlayEditor
