#include "plugin/Equipment.h"

#include <utility>

#include "gui/CylinderGui.h"
#include "tools/MakeMouseTool.h"

namespace OverlayEditor {

MouseToolPtr Equipment::makeTool(const Preferences& preferences, CylinderShape& shape) {
    return makeMouseTool(preferences, shape);
}

std::unique_ptr<CylinderPanel> Equipment::makePanel(const CylinderShape& shape, Preferences& preferences,
                                                    PIGUI::PICanvas& canvas, PanelChange change) {
    return std::make_unique<CylinderGui>(shape.subtype(), preferences, canvas, std::move(change));
}

}  // namespace OverlayEditor
