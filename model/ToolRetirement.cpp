#include "model/ToolRetirement.h"

#include <utility>

namespace OverlayEditor {
namespace {

std::function<void(MouseTool*)> listener;

}  // namespace

void ToolRetirement::retire(MouseTool* tool) {
    if (!tool) return;
    tool->setDrawDoneCallback(nullptr);
    if (listener) listener(tool);
    tool->deactivate();
    delete tool;
}

void ToolRetirement::setListener(std::function<void(MouseTool*)> newListener) {
    listener = std::move(newListener);
}

}  // namespace OverlayEditor
