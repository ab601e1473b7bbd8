#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "model/MouseTool.h"
#include "tools/HintSource.h"
#include "tools/NullMouseTool.h"

namespace OverlayEditor {

/// Routes the mouse events and the refreshes of the 3-D view to the one tool that is current. Tools stay
/// owned by whoever made them; one that goes through ToolRetirement while it is current is replaced by
/// the null tool. One manager at a time.
class MouseManager {
  public:
    MouseManager();
    /// Neither deactivates nor deletes the current tool.
    ~MouseManager();
    MouseManager(const MouseManager&) = delete;
    MouseManager& operator=(const MouseManager&) = delete;

    /// Retires the current tool (it gets a null draw-done callback and is deactivated) and makes this one
    /// current. Null is the same as clearMouseTool.
    void setCurrentMouseTool(MouseTool* tool, bool activate);
    void clearMouseTool();
    MouseTool* currentMouseTool() const { return current_; }
    /// True unless the null tool is current.
    bool isValid() const { return current_ != &nullTool_; }
    bool isActive() const { return isValid() && current_->isActive(); }

    /// An entry of its own: what waits for its end may delete the tool. \return non-zero when the tool
    /// consumed the event
    int handleMouseEvent(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event);
    void preDrawOnRefresh(int width, int height);
    /// For the current tool and those to come; not owned, null for nobody.
    void setDrawDoneCallback(FunctorTwoParams__* callback);
    /// Told when another tool has become current, in whichever way but its retirement; empty for nobody.
    void setChangeListener(std::function<void()> listener) { changeListener_ = std::move(listener); }
    /// Told of each event before the tool is; empty for nobody.
    void setEventListener(std::function<void(PIGUI::PIMouseEventType_t)> listener) {
        eventListener_ = std::move(listener);
    }
    /// Told whenever the current tool's hint has become another one, empty when there is none; an empty
    /// function for nobody. The host may be called from it.
    void setHintListener(std::function<void(std::string_view)> listener);

  private:
    void makeCurrent_(MouseTool* tool);
    void reportHint_();

    NullMouseTool nullTool_;
    MouseTool* current_ = &nullTool_;
    /// The current tool's; null when it has none.
    const HintSource* hints_ = nullptr;
    std::string hint_;
    FunctorTwoParams__* drawDoneCallback_ = nullptr;
    std::function<void()> changeListener_;
    std::function<void(PIGUI::PIMouseEventType_t)> eventListener_;
    std::function<void(std::string_view)> hintListener_;
};

}  // namespace OverlayEditor
