#pragma once

#include <memory>

#include "model/Panels.h"
#include "model/ToolRetirement.h"

namespace PIGUI {
class PICanvas;
}

namespace OverlayEditor {

class AnnotationShape;
class CylinderShape;
class FreeDrawShape;
class OrbitShape;
class PolygonShape;
class Preferences;
class RectangleShape;

/// Gives shapes what the model does not know: a mouse tool and a property panel. One overload per
/// concrete shape, so that a new kind of shape does not compile until both exist. The plug-in installs
/// the real one at start-up and takes it out at close; without one shapes have no tool and no panel.
class ShapeEquipment {
  public:
    virtual ~ShapeEquipment() = default;

    /// Null for a kind that has no tool. The tool keeps the references.
    virtual MouseToolPtr makeTool(const Preferences& preferences, CylinderShape& shape) = 0;
    virtual MouseToolPtr makeTool(const Preferences& preferences, OrbitShape& shape) = 0;
    virtual MouseToolPtr makeTool(const Preferences& preferences, PolygonShape& shape) = 0;
    virtual MouseToolPtr makeTool(const Preferences& preferences, RectangleShape& shape) = 0;
    virtual MouseToolPtr makeTool(const Preferences& preferences, FreeDrawShape& shape) = 0;
    virtual MouseToolPtr makeTool(const Preferences& preferences, AnnotationShape& shape) = 0;

    /// Builds the shape's panel inside `canvas`; `change` is called after every edit of the user's.
    virtual std::unique_ptr<CylinderPanel> makePanel(const CylinderShape& shape, Preferences& preferences,
                                                     PIGUI::PICanvas& canvas, PanelChange change) = 0;
    virtual std::unique_ptr<OrbitPanel> makePanel(const OrbitShape& shape, Preferences& preferences,
                                                  PIGUI::PICanvas& canvas, PanelChange change) = 0;
    virtual std::unique_ptr<PolygonPanel> makePanel(const PolygonShape& shape, Preferences& preferences,
                                                    PIGUI::PICanvas& canvas, PanelChange change) = 0;
    virtual std::unique_ptr<RectanglePanel> makePanel(const RectangleShape& shape, Preferences& preferences,
                                                      PIGUI::PICanvas& canvas, PanelChange change) = 0;
    virtual std::unique_ptr<FreeDrawPanel> makePanel(const FreeDrawShape& shape, Preferences& preferences,
                                                     PIGUI::PICanvas& canvas, PanelChange change) = 0;
    virtual std::unique_ptr<AnnotationPanel> makePanel(const AnnotationShape& shape, Preferences& preferences,
                                                       PIGUI::PICanvas& canvas, PanelChange change) = 0;

    /// Null removes it. Not owned.
    static void install(ShapeEquipment* equipment);
    static ShapeEquipment* installed();
    /// The tool for a shape under construction: null while nothing is installed.
    template <typename ConcreteShape>
    static MouseToolPtr toolFor(const Preferences& preferences, ConcreteShape& shape) {
        return installed() ? installed()->makeTool(preferences, shape) : nullptr;
    }
};

}  // namespace OverlayEditor
