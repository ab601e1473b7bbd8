#pragma once

#include "model/ShapeEquipment.h"

namespace OverlayEditor {

/// The real tools and panels: where the model, the tools and the widgets meet.
class Equipment final : public ShapeEquipment {
  public:
    MouseToolPtr makeTool(const Preferences& preferences, CylinderShape& shape) override;
    MouseToolPtr makeTool(const Preferences& preferences, OrbitShape& shape) override;
    MouseToolPtr makeTool(const Preferences& preferences, PolygonShape& shape) override;
    MouseToolPtr makeTool(const Preferences& preferences, RectangleShape& shape) override;
    MouseToolPtr makeTool(const Preferences& preferences, FreeDrawShape& shape) override;
    MouseToolPtr makeTool(const Preferences& preferences, AnnotationShape& shape) override;
    std::unique_ptr<CylinderPanel> makePanel(const CylinderShape& shape, Preferences& preferences,
                                             PIGUI::PICanvas& canvas, PanelChange change) override;
    std::unique_ptr<OrbitPanel> makePanel(const OrbitShape& shape, Preferences& preferences,
                                          PIGUI::PICanvas& canvas, PanelChange change) override;
    std::unique_ptr<PolygonPanel> makePanel(const PolygonShape& shape, Preferences& preferences,
                                            PIGUI::PICanvas& canvas, PanelChange change) override;
    std::unique_ptr<RectanglePanel> makePanel(const RectangleShape& shape, Preferences& preferences,
                                              PIGUI::PICanvas& canvas, PanelChange change) override;
    std::unique_ptr<FreeDrawPanel> makePanel(const FreeDrawShape& shape, Preferences& preferences,
                                             PIGUI::PICanvas& canvas, PanelChange change) override;
    std::unique_ptr<AnnotationPanel> makePanel(const AnnotationShape& shape, Preferences& preferences,
                                               PIGUI::PICanvas& canvas, PanelChange change) override;
};

}  // namespace OverlayEditor
