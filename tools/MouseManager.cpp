#include "tools/MouseManager.h"

#include <utility>

#include "model/ToolRetirement.h"

namespace OverlayEditor {

MouseManager::MouseManager() {
    ToolRetirement::setListener([this](MouseTool* tool) {
        if (tool == current_) current_ = &nullTool_;
    });
}

MouseManager::~MouseManager() {
    ToolRetirement::setListener({});
    current_->setDrawDoneCallback(nullptr);
}

void MouseManager::setCurrentMouseTool(MouseTool* tool, bool activate) {
    const ToolRetirement::EventScope scope;
    if (!tool) tool = &nullTool_;
    // Current before the old one's deactivation calls into the host: if it dies there, the listener sees it.
    MouseTool* const old = std::exchange(current_, tool);
    old->setDrawDoneCallback(nullptr);
    old->deactivate();
    if (current_ != tool) return;
    if (activate) tool->activate();
    if (current_ == tool) tool->setDrawDoneCallback(drawDoneCallback_);
    if (old != tool && changeListener_) changeListener_();
}

void MouseManager::clearMouseTool() {
    setCurrentMouseTool(&nullTool_, false);
}

int MouseManager::handleMouseEvent(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) {
    const ToolRetirement::EventScope scope;
    return current_->handleMouseEvent(type, event);
}

void MouseManager::preDrawOnRefresh(int width, int height) {
    const ToolRetirement::EventScope scope;
    current_->preDrawOnRefresh(width, height);
}

void MouseManager::setDrawDoneCallback(FunctorTwoParams__* callback) {
    drawDoneCallback_ = callback;
    current_->setDrawDoneCallback(callback);
}

}  // namespace OverlayEditor
