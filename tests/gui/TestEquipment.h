#pragma once

#include <utility>

#include "gui/MakePanel.h"
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
    OverlayEditor::MouseToolPtr makeTool(const OverlayEditor::Preferences& preferences,
                                         OverlayEditor::OrbitShape& shape) override {
        return OverlayEditor::makeMouseTool(preferences, shape);
    }
    OverlayEditor::MouseToolPtr makeTool(const OverlayEditor::Preferences& preferences,
                                         OverlayEditor::PolygonShape& shape) override {
        return OverlayEditor::makeMouseTool(preferences, shape);
    }
    OverlayEditor::MouseToolPtr makeTool(const OverlayEditor::Preferences& preferences,
                                         OverlayEditor::RectangleShape& shape) override {
        return OverlayEditor::makeMouseTool(preferences, shape);
    }
    OverlayEditor::MouseToolPtr makeTool(const OverlayEditor::Preferences& preferences,
                                         OverlayEditor::FreeDrawShape& shape) override {
        return OverlayEditor::makeMouseTool(preferences, shape);
    }
    OverlayEditor::MouseToolPtr makeTool(const OverlayEditor::Preferences& preferences,
                                         OverlayEditor::AnnotationShape& shape) override {
        return OverlayEditor::makeMouseTool(preferences, shape);
    }

    std::unique_ptr<OverlayEditor::CylinderPanel> makePanel(const OverlayEditor::CylinderShape& shape,
                                                            OverlayEditor::Preferences& preferences,
                                                            PIGUI::PICanvas& canvas,
                                                            OverlayEditor::PanelChange change) override {
        return OverlayEditor::makeShapePanel(shape, preferences, canvas, std::move(change));
    }
    std::unique_ptr<OverlayEditor::OrbitPanel> makePanel(const OverlayEditor::OrbitShape& shape,
                                                         OverlayEditor::Preferences& preferences,
                                                         PIGUI::PICanvas& canvas,
                                                         OverlayEditor::PanelChange change) override {
        return OverlayEditor::makeShapePanel(shape, preferences, canvas, std::move(change));
    }
    std::unique_ptr<OverlayEditor::PolygonPanel> makePanel(const OverlayEditor::PolygonShape& shape,
                                                           OverlayEditor::Preferences& preferences,
                                                           PIGUI::PICanvas& canvas,
                                                           OverlayEditor::PanelChange change) override {
        return OverlayEditor::makeShapePanel(shape, preferences, canvas, std::move(change));
    }
    std::unique_ptr<OverlayEditor::RectanglePanel> makePanel(const OverlayEditor::RectangleShape& shape,
                                                             OverlayEditor::Preferences& preferences,
                                                             PIGUI::PICanvas& canvas,
                                                             OverlayEditor::PanelChange change) override {
        return OverlayEditor::makeShapePanel(shape, preferences, canvas, std::move(change));
    }
    std::unique_ptr<OverlayEditor::FreeDrawPanel> makePanel(const OverlayEditor::FreeDrawShape& shape,
                                                            OverlayEditor::Preferences& preferences,
                                                            PIGUI::PICanvas& canvas,
                                                            OverlayEditor::PanelChange change) override {
        return OverlayEditor::makeShapePanel(shape, preferences, canvas, std::move(change));
    }
    std::unique_ptr<OverlayEditor::AnnotationPanel> makePanel(const OverlayEditor::AnnotationShape& shape,
                                                              OverlayEditor::Preferences& preferences,
                                                              PIGUI::PICanvas& canvas,
                                                              OverlayEditor::PanelChange change) override {
        return OverlayEditor::makeShapePanel(shape, preferences, canvas, std::move(change));
    }
};
