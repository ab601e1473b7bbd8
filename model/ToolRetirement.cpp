#include "model/ToolRetirement.h"

#include <utility>

#include "pi/Guard.h"

namespace OverlayEditor {
namespace {

std::function<void(MouseTool*)> listener;

}  // namespace

void ToolRetirement::retire(MouseTool* tool) {
    if (!tool) return;
    tool->setDrawDoneCallback(nullptr);
    guardedEnd([&] {
        if (listener) listener(tool);
    });
    guardedEnd([&] { tool->deactivate(); });
    delete tool;
}

void ToolRetirement::setListener(std::function<void(MouseTool*)> newListener) {
    listener = std::move(newListener);
}

}  // namespace OverlayEditor
