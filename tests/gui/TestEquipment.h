#pragma once

#include <utility>

#include "gui/CylinderGui.h"
#include "model/ShapeEquipment.h"
#include "tools/MakeMouseTool.h"

/// The real tools and panels, installed while it lives.
class TestEquipment final : public OverlayEditor::ShapeEquipment {
  public:
    TestEquipment() { install(this); }
    ~TestEquipment() override { install(nullptr); }

    OverlayEditor::MouseToolPtr makeTool(const OverlayEditor::Preferences& preferences,
                                         OverlayEditor::CylinderShape& shape) override {
        return OverlayEditor::makeMouseTool(preferences, shape);
    }
    std::unique_ptr<OverlayEditor::CylinderPanel> makePanel(const OverlayEditor::CylinderShape& shape,
                                                            OverlayEditor::Preferences& preferences,
                                                            PIGUI::PICanvas& canvas,
                                                            OverlayEditor::PanelChange change) override {
        return std::make_unique<OverlayEditor::CylinderGui>(shape.subtype(), preferences, canvas,
                                                            std::move(change));
    }
};
