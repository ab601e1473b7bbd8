#pragma once

#include <functional>
#include <memory>

#include "model/MouseTool.h"

namespace OverlayEditor {

/// A tool's own event may end in its shape being deleted, and the tool with it. A tool is therefore
/// retired, not deleted: it is deactivated while its shape is still whole, and its memory lives until the
/// event that is being handled has returned. After that it is never called again.
class ToolRetirement {
  public:
    /// Handling of one event; while any such scope is open, retired tools are kept.
    class EventScope {
      public:
        EventScope();
        ~EventScope();
        EventScope(const EventScope&) = delete;
        EventScope& operator=(const EventScope&) = delete;
    };

    /// Takes the tool: gives it a null draw-done callback, tells the listener, deactivates it, and deletes it
    /// now or at the end of the outermost event.
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
