#pragma once

#include <memory>

#include "model/Panels.h"
#include "model/ShapeEquipment.h"

namespace OverlayEditor {

/// The property panels, by shape. \see ShapeEquipment::makePanel
std::unique_ptr<CylinderPanel> makeShapePanel(const CylinderShape& shape, Preferences& preferences,
                                              PIGUI::PICanvas& canvas, PanelChange change);
std::unique_ptr<OrbitPanel> makeShapePanel(const OrbitShape& shape, Preferences& preferences,
                                           PIGUI::PICanvas& canvas, PanelChange change);
std::unique_ptr<PolygonPanel> makeShapePanel(const PolygonShape& shape, Preferences& preferences,
                                             PIGUI::PICanvas& canvas, PanelChange change);
std::unique_ptr<RectanglePanel> makeShapePanel(const RectangleShape& shape, Preferences& preferences,
                                               PIGUI::PICanvas& canvas, PanelChange change);
std::unique_ptr<FreeDrawPanel> makeShapePanel(const FreeDrawShape& shape, Preferences& preferences,
                                              PIGUI::PICanvas& canvas, PanelChange change);
std::unique_ptr<AnnotationPanel> makeShapePanel(const AnnotationShape& shape, Preferences& preferences,
                                                PIGUI::PICanvas& canvas, PanelChange change);

}  // namespace OverlayEditor
