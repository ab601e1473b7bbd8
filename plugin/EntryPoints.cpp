#include "common/Notify.h"
#include "pi/ClientFunctionMap.h"
#include "pi/Guard.h"
#include "pi/HostFaults.h"
#include "pi/PIApplication.h"
#include "pi/PIBase.h"
#include "pi/PluginVersions.h"
#include "plugin/OverlayEditorPlugin.h"

HPI_EXPORT void HPI_InitializeFunctionMap(PIServiceTable* services, void* instance) {
    if (EntryScope::isNested()) {
        halNotify::notify(halNotify::Error)
            << "OverlayEditor is not started again from inside a service: it is at work";
        return;
    }
    guardedEntry("HPI_InitializeFunctionMap", [&] {
        // An instance that was not closed goes through the table that it knows.
        ClientFunctionMap::closeApplication();
        g_FunctionMap = services;
        g_This = instance;
        HostFaults::forget();
        ClientFunctionMap::replaceApplication(std::make_unique<OverlayEditor::OverlayEditorPlugin>());
    });
}

/// Events carry their record first; the further arguments belong to no adapter.
HPI_EXPORT std::int32_t HPI_PluginDispatchFunction(std::int32_t number, PIFunctionParams_t* params, void*,
                                                   void*, void*, void*) {
    return guarded("HPI_PluginDispatchFunction", 0,
                   [&] { return ClientFunctionMap::dispatch(number, params); });
}

HPI_EXPORT void HPI_CleanUpPlugin() {
    guarded("HPI_CleanUpPlugin", 0, [] {
        ClientFunctionMap::cleanUp();
        return 0;
    });
    g_FunctionMap = nullptr;
}
