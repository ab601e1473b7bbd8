#pragma once

#include "gui/ShapePanelMaker.h"
#include "tools/MouseToolMaker.h"

/// The real tools and panels, installed while it lives.
class TestEquipment {
  public:
    TestEquipment() {
        OverlayEditor::ToolMaker::install(&tools_);
        OverlayEditor::PanelMaker::install(&panels_);
    }
    ~TestEquipment() {
        OverlayEditor::ToolMaker::install(nullptr);
        OverlayEditor::PanelMaker::install(nullptr);
    }
    TestEquipment(const TestEquipment&) = delete;
    TestEquipment& operator=(const TestEquipment&) = delete;

  private:
    OverlayEditor::MouseToolMaker tools_;
    OverlayEditor::ShapePanelMaker panels_;
};
