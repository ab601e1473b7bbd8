#pragma once

#include <memory>

#include "model/Installed.h"
#include "model/Panels.h"

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

/// Gives a shape its property panel, which the model knows by its abstract class only: without an installed
/// one shapes have none. One overload a concrete shape, so that a new one does not compile until its
/// panel exists.
class PanelMaker : public Installed<PanelMaker> {
  public:
    virtual ~PanelMaker() = default;

    /// Builds the panel inside `canvas`, which must outlive it; `change` is called after every edit of the
    /// user's.
    virtual std::unique_ptr<CylinderPanel> make(const CylinderShape& shape, Preferences& preferences,
                                                PIGUI::PICanvas& canvas, PanelChange change) = 0;
    virtual std::unique_ptr<OrbitPanel> make(const OrbitShape& shape, Preferences& preferences,
                                             PIGUI::PICanvas& canvas, PanelChange change) = 0;
    virtual std::unique_ptr<PolygonPanel> make(const PolygonShape& shape, Preferences& preferences,
                                               PIGUI::PICanvas& canvas, PanelChange change) = 0;
    virtual std::unique_ptr<RectanglePanel> make(const RectangleShape& shape, Preferences& preferences,
                                                 PIGUI::PICanvas& canvas, PanelChange change) = 0;
    virtual std::unique_ptr<FreeDrawPanel> make(const FreeDrawShape& shape, Preferences& preferences,
                                                PIGUI::PICanvas& canvas, PanelChange change) = 0;
    virtual std::unique_ptr<AnnotationPanel> make(const AnnotationShape& shape, Preferences& preferences,
                                                  PIGUI::PICanvas& canvas, PanelChange change) = 0;
};

}  // namespace OverlayEditor
