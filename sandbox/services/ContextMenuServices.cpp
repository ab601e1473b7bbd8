#include <algorithm>

#include "pi/HostCallback.h"
#include "sandbox/Host.h"
#include "sandbox/services/ContextMenu.h"
#include "sandbox/services/Services.h"

namespace sandbox {

void addContextMenuServices(Host& host) {
    using Id = PIServerFunctions_t;
    using Selector = PISelector::ContextMenu;
    ServiceTable& table = host.services();
    auto& callbacks = host.registrations().menuCallbacks;
    table.addSelected(
        Id::ContextMenu, Selector::Register, "register menu callback", {.pointers = 1},
        [&callbacks](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
            auto* callback = arguments.pointer<PIHALVIS::ContextMenuCallbackV3>(0);
            if (!callback) return call.misuse("no callback");
            if (std::ranges::find(callbacks, callback, &PluginRegistrations::MenuCallback::callback) !=
                callbacks.end())
                return call.misuse("registered already");
            callbacks.push_back({callback, &call.plugin()});
            return 1;
        });
    table.addSelected(Id::ContextMenu, Selector::Remove, "remove menu callback", {.pointers = 1},
                      [&callbacks](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          const auto at = std::ranges::find(
                              callbacks, arguments.pointer<PIHALVIS::ContextMenuCallbackV3>(0),
                              &PluginRegistrations::MenuCallback::callback);
                          if (at == callbacks.end() || at->owner != &call.plugin())
                              return call.misuse("unknown callback");
                          callbacks.erase(at);
                          return 1;
                      });
    table.addSelected(Id::ContextMenu, Selector::AddItem, "add menu item",
                      {.integers = 2, .texts = 1, .pointers = 2},
                      [](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          auto* menu = call.object<ContextMenu>(arguments.pointer(0), "open context menu");
                          auto* callback = arguments.pointer<FunctorTwoParams__>(1);
                          if (!menu) return 0;
                          if (!callback) return call.misuse("a menu item needs a callback");
                          menu->add(arguments.integer(0), arguments.string(0), arguments.integer(1) != 0,
                                    [callback, plugin = &call.plugin()] {
                                        plugin->enter("callback of a menu item",
                                                      [callback] { callback->Call(nullptr, nullptr); });
                                    });
                          return 1;
                      });
}

}  // namespace sandbox
