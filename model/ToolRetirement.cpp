#include "model/ToolRetirement.h"

#include <utility>
#include <vector>

namespace OverlayEditor {
namespace {

int openEvents = 0;
std::vector<MouseTool*> retired;
std::function<void(MouseTool*)> listener;

}  // namespace

ToolRetirement::EventScope::EventScope() {
    ++openEvents;
}

ToolRetirement::EventScope::~EventScope() {
    if (--openEvents > 0) return;
    // A tool's destructor may retire another one.
    while (!retired.empty())
        for (MouseTool* tool : std::exchange(retired, {})) delete tool;
}

void ToolRetirement::retire(MouseTool* tool) {
    if (!tool) return;
    tool->setDrawDoneCallback(nullptr);
    if (listener) listener(tool);
    tool->deactivate();
    if (openEvents > 0)
        retired.push_back(tool);
    else
        delete tool;
}

void ToolRetirement::setListener(std::function<void(MouseTool*)> newListener) {
    listener = std::move(newListener);
}

}  // namespace OverlayEditor
