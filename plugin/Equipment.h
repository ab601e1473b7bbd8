#pragma once

#include "model/ShapeEquipment.h"

namespace OverlayEditor {

/// The real tools and panels: where the model, the tools and the widgets meet.
class Equipment final : public ShapeEquipment {
  public:
    MouseToolPtr makeTool(const Preferences& preferences, CylinderShape& shape) override;
    std::unique_ptr<CylinderPanel> makePanel(const CylinderShape& shape, Preferences& preferences,
                                             PIGUI::PICanvas& canvas, PanelChange change) override;
};

}  // namespace OverlayEditor
