#include <cstdint>

#include "common/Notify.h"
#include "pi/ClientFunctionMap.h"
#include "pi/Guard.h"
#include "pi/HostFaults.h"
#include "pi/PIApplication.h"
#include "pi/PIBase.h"
#include "plugin/OverlayEditorPlugin.h"

#define HPI_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

/// The interface version that this plug-in was written for.
constexpr std::int32_t kInterfaceMajor = 1;
constexpr std::int32_t kInterfaceMinor = 20;
constexpr std::int32_t kInterfaceRevision = 0;

}  // namespace

HPI_EXPORT double HPI_VersionInfo() {
    return PIBase::legacyApiVersion(kInterfaceMajor, kInterfaceMinor, kInterfaceRevision);
}

HPI_EXPORT std::int32_t HPI_VersionInfoEx(std::int32_t selector) {
    if (selector == 1) return kInterfaceMinor;
    if (selector == 2) return kInterfaceRevision;
    return kInterfaceMajor;
}

HPI_EXPORT std::int32_t HPI_MinimumVersion() {
    return 12000;
}

/// The release of the compiler that the interface fixes, 8.3.1, whatever built this library.
HPI_EXPORT std::int32_t HPI_GetCompilerVersion() {
    return 831;
}

HPI_EXPORT std::int32_t HPI_GetBitWidth() {
    return 64;
}

HPI_EXPORT std::int32_t HPI_IsDebugMode() {
    return 0;
}

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
