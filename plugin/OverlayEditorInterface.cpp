#include "plugin/OverlayEditorInterface.h"

#include <utility>

#include "pi/Guard.h"

namespace OverlayEditor {

std::uint64_t OverlayEditorInterface::registerNewZelFunction(NewZelFunction function) {
    functions_[++lastId_] = std::move(function);
    return lastId_;
}

void OverlayEditorInterface::removeNewZelFunction(std::uint64_t id) {
    functions_.erase(id);
}

void OverlayEditorInterface::executeFunctions(void* overlay) {
    const EntryScope scope;
    const std::vector<void*> overlays{overlay};
    // Those that are registered now; a function that is called may change the map.
    const std::uint64_t last = lastId_;
    for (auto at = functions_.begin(); at != functions_.end() && at->first <= last;) {
        const std::uint64_t id = at->first;
        const NewZelFunction function = at->second;
        if (function)
            guarded("registered new-overlay function", 0, [&] {
                const CallToOthers call;
                function(overlays);
                return 0;
            });
        at = functions_.upper_bound(id);
    }
}

}  // namespace OverlayEditor
