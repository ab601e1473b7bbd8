#include "gui/ShapePanelMaker.h"

#include <utility>

#include "gui/AnnotationGui.h"
#include "gui/CylinderGui.h"
#include "gui/FreeDrawGui.h"
#include "gui/OrbitGui.h"
#include "gui/PolygonGui.h"
#include "gui/RectangleGui.h"

namespace OverlayEditor {

std::unique_ptr<CylinderPanel> ShapePanelMaker::make(const CylinderShape& shape, Preferences& preferences,
                                                     PIGUI::PICanvas& canvas, PanelChange change) {
    return std::make_unique<CylinderGui>(shape.subtype(), preferences, canvas, std::move(change));
}

std::unique_ptr<OrbitPanel> ShapePanelMaker::make(const OrbitShape&, Preferences& preferences,
                                                  PIGUI::PICanvas& canvas, PanelChange change) {
    return std::make_unique<OrbitGui>(preferences, canvas, std::move(change));
}

std::unique_ptr<PolygonPanel> ShapePanelMaker::make(const PolygonShape& shape, Preferences& preferences,
                                                    PIGUI::PICanvas& canvas, PanelChange change) {
    return std::make_unique<PolygonGui>(shape.subtype(), preferences, canvas, std::move(change));
}

std::unique_ptr<RectanglePanel> ShapePanelMaker::make(const RectangleShape&, Preferences& preferences,
                                                      PIGUI::PICanvas& canvas, PanelChange change) {
    return std::make_unique<RectangleGui>(preferences, canvas, std::move(change));
}

std::unique_ptr<FreeDrawPanel> ShapePanelMaker::make(const FreeDrawShape&, Preferences& preferences,
                                                     PIGUI::PICanvas& canvas, PanelChange change) {
    return std::make_unique<FreeDrawGui>(preferences, canvas, std::move(change));
}

std::unique_ptr<AnnotationPanel> ShapePanelMaker::make(const AnnotationShape&, Preferences& preferences,
                                                       PIGUI::PICanvas& canvas, PanelChange change) {
    return std::make_unique<AnnotationGui>(preferences, canvas, std::move(change));
}

}  // namespace OverlayEditor
