#pragma once

#include <functional>
#include <memory>

#include "model/MouseTool.h"

namespace OverlayEditor {

/// The end of a tool: it is deactivated while its shape is still whole, and nobody keeps it current.
class ToolRetirement {
  public:
    /// Takes the tool: gives it a null draw-done callback, tells the listener, deactivates and deletes it.
    static void retire(MouseTool* tool);

    /// Told of each tool before it goes, so that nobody keeps it current. Empty removes the listener.
    static void setListener(std::function<void(MouseTool*)> listener);
};

struct RetireTool {
    void operator()(MouseTool* tool) const { ToolRetirement::retire(tool); }
};

/// How a shape owns its tool: as its last member, so that the tool goes while the shape's data stands.
using MouseToolPtr = std::unique_ptr<MouseTool, RetireTool>;

}  // namespace OverlayEditor
