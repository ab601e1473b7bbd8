#include "tools/MouseManager.h"

#include <utility>

#include "model/ToolRetirement.h"
#include "pi/EntryScope.h"

namespace OverlayEditor {

MouseManager::MouseManager() {
    ToolRetirement::setListener([this](MouseTool* tool) {
        if (tool != current_) return;
        makeCurrent_(&nullTool_);
        reportHint_();
    });
}

MouseManager::~MouseManager() {
    ToolRetirement::setListener({});
    current_->setDrawDoneCallback(nullptr);
}

void MouseManager::setCurrentMouseTool(MouseTool* tool, bool activate) {
    if (!tool) tool = &nullTool_;
    MouseTool* const old = current_;
    makeCurrent_(tool);
    old->setDrawDoneCallback(nullptr);
    old->deactivate();
    if (activate) tool->activate();
    tool->setDrawDoneCallback(drawDoneCallback_);
    reportHint_();
    if (old != tool && changeListener_) changeListener_();
}

void MouseManager::clearMouseTool() {
    setCurrentMouseTool(&nullTool_, false);
}

int MouseManager::handleMouseEvent(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) {
    const EntryScope scope;
    if (eventListener_) eventListener_(type);
    const int result = current_->handleMouseEvent(type, event);
    reportHint_();
    return result;
}

void MouseManager::preDrawOnRefresh(int width, int height) {
    current_->preDrawOnRefresh(width, height);
    // The panel may have completed the shape.
    reportHint_();
}

void MouseManager::setDrawDoneCallback(FunctorTwoParams__* callback) {
    drawDoneCallback_ = callback;
    current_->setDrawDoneCallback(callback);
}

void MouseManager::setHintListener(std::function<void(std::string_view)> listener) {
    hintListener_ = std::move(listener);
    hint_ = {};
    reportHint_();
}

void MouseManager::makeCurrent_(MouseTool* tool) {
    current_ = tool;
    hints_ = dynamic_cast<const HintSource*>(tool);
}

void MouseManager::reportHint_() {
    std::string hint = hints_ ? hints_->hint() : std::string();
    if (hint == hint_) return;
    hint_ = std::move(hint);
    if (hintListener_) hintListener_(hint_);
}

}  // namespace OverlayEditor
