#pragma once

#include "pi/FunctorTwoParams.h"
#include "pi/PIEvents.h"

namespace OverlayEditor {

/// What turns the mouse events of the 3-D view into a shape's points. One tool at a time is current.
/// Handlers return non-zero when they consumed the event: the host then does not use it.
class MouseTool {
  public:
    virtual ~MouseTool() = default;

    /// Routes one event of the host.
    virtual int handleMouseEvent(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) = 0;
    /// Called before each redraw of the view; an OpenGL context is current.
    virtual void preDrawOnRefresh(int widthPixels, int heightPixels) = 0;
    virtual void activate() = 0;
    /// Ends whatever is going on. Does nothing when the tool is not active.
    virtual void deactivate() = 0;
    virtual bool isActive() const = 0;
    /// Shows or hides the editable points of the shape.
    virtual void setShowPoints(bool shown) = 0;
    /// Told when a drawing is finished; not owned, null for nobody.
    virtual void setDrawDoneCallback(FunctorTwoParams__* callback) = 0;
    virtual int leftPress_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) = 0;
    virtual int leftRelease_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) = 0;
    virtual int rightPress_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) = 0;
    virtual int mouseWheel_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) = 0;
    virtual int mouseMotion_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) = 0;
};

}  // namespace OverlayEditor
