#pragma once

#include "gui/ShapePanelMaker.h"
#include "support/Installed.h"
#include "tools/MouseToolMaker.h"

/// The real tools and panels, installed while it lives.
struct TestEquipment {
    Installed<OverlayEditor::ToolMaker, OverlayEditor::MouseToolMaker> tools;
    Installed<OverlayEditor::PanelMaker, OverlayEditor::ShapePanelMaker> panels;
};
