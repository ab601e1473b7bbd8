#include "gui/MakePanel.h"

#include <utility>

#include "gui/AnnotationGui.h"
#include "gui/CylinderGui.h"
#include "gui/FreeDrawGui.h"
#include "gui/OrbitGui.h"
#include "gui/PolygonGui.h"
#include "gui/RectangleGui.h"

namespace OverlayEditor {

std::unique_ptr<CylinderPanel> makeShapePanel(const CylinderShape& shape, Preferences& preferences,
                                              PIGUI::PICanvas& canvas, PanelChange change) {
    return std::make_unique<CylinderGui>(shape.subtype(), preferences, canvas, std::move(change));
}

std::unique_ptr<OrbitPanel> makeShapePanel(const OrbitShape&, Preferences& preferences,
                                           PIGUI::PICanvas& canvas, PanelChange change) {
    return std::make_unique<OrbitGui>(preferences, canvas, std::move(change));
}

std::unique_ptr<PolygonPanel> makeShapePanel(const PolygonShape& shape, Preferences& preferences,
                                             PIGUI::PICanvas& canvas, PanelChange change) {
    return std::make_unique<PolygonGui>(shape.subtype(), preferences, canvas, std::move(change));
}

std::unique_ptr<RectanglePanel> makeShapePanel(const RectangleShape&, Preferences& preferences,
                                               PIGUI::PICanvas& canvas, PanelChange change) {
    return std::make_unique<RectangleGui>(preferences, canvas, std::move(change));
}

std::unique_ptr<FreeDrawPanel> makeShapePanel(const FreeDrawShape&, Preferences&, PIGUI::PICanvas& canvas,
                                              PanelChange change) {
    return std::make_unique<FreeDrawGui>(canvas, std::move(change));
}

std::unique_ptr<AnnotationPanel> makeShapePanel(const AnnotationShape&, Preferences& preferences,
                                                PIGUI::PICanvas& canvas, PanelChange change) {
    return std::make_unique<AnnotationGui>(preferences, canvas, std::move(change));
}

}  // namespace OverlayEditor
