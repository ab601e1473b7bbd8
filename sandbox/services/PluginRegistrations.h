#pragma once

#include <map>
#include <string>
#include <vector>

#include "pi/HostObservers.h"

namespace sandbox {

class Plugin;

/// What plug-ins have registered by pointer and not by handle.
struct PluginRegistrations {
    struct PublishedService {
        void* interface = nullptr;
        Plugin* owner = nullptr;
    };
    struct MenuCallback {
        PIHALVIS::ContextMenuCallbackV3* callback = nullptr;
        Plugin* owner = nullptr;
    };

    std::map<std::string, PublishedService> services;
    std::vector<MenuCallback> menuCallbacks;
    std::map<Plugin*, int> mouseGrabs;  ///< how often each has grabbed the mouse
};

}  // namespace sandbox
