#pragma once

#include "model/PanelMaker.h"

namespace OverlayEditor {

/// Makes the property panels.
class ShapePanelMaker final : public PanelMaker {
  public:
    std::unique_ptr<CylinderPanel> make(const CylinderShape& shape, Preferences& preferences,
                                        PIGUI::PICanvas& canvas, PanelChange change) override;
    std::unique_ptr<OrbitPanel> make(const OrbitShape& shape, Preferences& preferences,
                                     PIGUI::PICanvas& canvas, PanelChange change) override;
    std::unique_ptr<PolygonPanel> make(const PolygonShape& shape, Preferences& preferences,
                                       PIGUI::PICanvas& canvas, PanelChange change) override;
    std::unique_ptr<RectanglePanel> make(const RectangleShape& shape, Preferences& preferences,
                                         PIGUI::PICanvas& canvas, PanelChange change) override;
    std::unique_ptr<FreeDrawPanel> make(const FreeDrawShape& shape, Preferences& preferences,
                                        PIGUI::PICanvas& canvas, PanelChange change) override;
    std::unique_ptr<AnnotationPanel> make(const AnnotationShape& shape, Preferences& preferences,
                                          PIGUI::PICanvas& canvas, PanelChange change) override;
};

}  // namespace OverlayEditor
