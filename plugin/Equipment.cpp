#include "plugin/Equipment.h"

#include <utility>

#include "gui/MakePanel.h"
#include "tools/MakeMouseTool.h"

namespace OverlayEditor {

MouseToolPtr Equipment::makeTool(const Preferences& preferences, CylinderShape& shape) {
    return makeMouseTool(preferences, shape);
}

MouseToolPtr Equipment::makeTool(const Preferences& preferences, OrbitShape& shape) {
    return makeMouseTool(preferences, shape);
}
MouseToolPtr Equipment::makeTool(const Preferences& preferences, PolygonShape& shape) {
    return makeMouseTool(preferences, shape);
}
MouseToolPtr Equipment::makeTool(const Preferences& preferences, RectangleShape& shape) {
    return makeMouseTool(preferences, shape);
}
MouseToolPtr Equipment::makeTool(const Preferences& preferences, FreeDrawShape& shape) {
    return makeMouseTool(preferences, shape);
}
MouseToolPtr Equipment::makeTool(const Preferences& preferences, AnnotationShape& shape) {
    return makeMouseTool(preferences, shape);
}

std::unique_ptr<CylinderPanel> Equipment::makePanel(const CylinderShape& shape, Preferences& preferences,
                                                    PIGUI::PICanvas& canvas, PanelChange change) {
    return makeShapePanel(shape, preferences, canvas, std::move(change));
}
std::unique_ptr<OrbitPanel> Equipment::makePanel(const OrbitShape& shape, Preferences& preferences,
                                                 PIGUI::PICanvas& canvas, PanelChange change) {
    return makeShapePanel(shape, preferences, canvas, std::move(change));
}
std::unique_ptr<PolygonPanel> Equipment::makePanel(const PolygonShape& shape, Preferences& preferences,
                                                   PIGUI::PICanvas& canvas, PanelChange change) {
    return makeShapePanel(shape, preferences, canvas, std::move(change));
}
std::unique_ptr<RectanglePanel> Equipment::makePanel(const RectangleShape& shape, Preferences& preferences,
                                                     PIGUI::PICanvas& canvas, PanelChange change) {
    return makeShapePanel(shape, preferences, canvas, std::move(change));
}
std::unique_ptr<FreeDrawPanel> Equipment::makePanel(const FreeDrawShape& shape, Preferences& preferences,
                                                    PIGUI::PICanvas& canvas, PanelChange change) {
    return makeShapePanel(shape, preferences, canvas, std::move(change));
}
std::unique_ptr<AnnotationPanel> Equipment::makePanel(const AnnotationShape& shape, Preferences& preferences,
                                                      PIGUI::PICanvas& canvas, PanelChange change) {
    return makeShapePanel(shape, preferences, canvas, std::move(change));
}

}  // namespace OverlayEditor
