#include "pi/ClientFunctionMap.h"

#include <array>
#include <utility>

#include "pi/EntryScope.h"
#include "pi/FunctorTwoParams.h"
#include "pi/PIApplication.h"
#include "pi/PICommon.h"
#include "pi/PIObject.h"

std::map<PIClientFunctions_t, PIClientFuncAndData_t> g_ClientMessageMap;

namespace {

/// The adapter of each client function, in the order of PIClientFunctions_t.
constexpr std::array<PIClientHandler, kClientFunctionCount> kAdapters = {
    &PIApp::PIApplication_v1_20::s_StartUp,
    &PIApplication_v0_5_0::s_Callback,
    &PIApplication_v0_5_0::s_Close,
    &PIApplication_v0_5_0::s_Name,
    &PIApplication_v0_5_0::s_CloseLocation,
    &PIApplication_v0_5_0::s_OpenLocation,
    &PIApplication_v0_5_0::s_FindNetworkLocation,
    &PIApplication_v0_5_0::s_HandleConfigOption,
    &PIApplication_v0_5_0::s_SaveConfigOptions,
    &PIApplication_v0_5_0::s_ListenToEvents,
    &PIApplication_v0_5_0::s_DrawOnRefresh,
    &PIApplication_v1_0::s_LoadInHALVIS,
    &PIApplication_v1_0::s_LoadInGrapher,
    &PIApplication_v1_0::s_LoadInScenarioEditor,
    &PIApplication_v1_0::s_LoadInPluginLogger,
    &PIApplication_v1_0::s_PreDrawOnRefresh,
    &PIApplication_v1_2::s_HandleMouseEvent,
    &PIApplication_v1_4::s_initializeTerrainRasterSet,
    &PIApplication_v1_4::s_parseTerrainRasterSetToken,
    &PIApplication_v1_4::s_getTerrainRasterSetTokenString,
    &PIApplication_v1_4::s_getTerrainRasterNode,
    &PIApplication_v1_4::s_dereferenceTerrainRasterSet,
    &PIApplication_v1_4::s_getTerrainRasterSetInfo,
    &PIApplication_v1_7::s_Description,
    &PIApplication_v1_7::s_Author,
    &PIApplication_v1_7::s_Version,
    &PIApplication_v1_7::s_URL,
    &PIApplication_v1_7::s_ContactInfo,
    &PIApplication_v1_13::s_LoadInHALVIS10,
    &PIApp::PIApplication_v1_20::s_ConfigureCommandLine,
    &PIApp::PIApplication_v1_24::s_LoadInGrapher10,
};

using Slot = PIParameterName_t;

/// A frame came at the wrong time, and none after it.
bool frameMissed = false;

void putOffEvent(const PIFunctionParams_t& params) {
    const auto code = params.integer(Slot::EventCode);
    const auto event = static_cast<PIApplicationEvents_t>(code);
    const bool aboutEntity =
        event == PIApplicationEvents_t::EntityRemoved || event == PIApplicationEvents_t::PlatformAdded;
    // The host's, and gone when the event's turn comes.
    const auto* const data = static_cast<const std::uint64_t*>(params.pointer(Slot::EventData));
    std::uint64_t id = aboutEntity && data ? *data : 0;
    EntryScope::wait({&g_ClientMessageMap, code, id}, [code, id]() mutable {
        PIFunctionParams_t record;
        record.integers[Slot::EventCode] = code;
        record.pointers[Slot::EventData] = id ? &id : nullptr;
        ClientFunctionMap::dispatch(static_cast<std::int32_t>(PIClientFunctions_t::ListenToEvents), &record);
    });
}

/// A drag must not outlast the button that holds it.
void putOffRelease(const PIGUI::PIMouseEvent& event) {
    static constexpr char key = 0;
    EntryScope::wait({&key}, [event = event]() mutable {
        PIFunctionParams_t record;
        record.integers[Slot::EventCode] = static_cast<std::int32_t>(PIGUI::PIMouseEventType_t::LeftRelease);
        record.pointers[Slot::EventData] = &event;
        ClientFunctionMap::dispatch(static_cast<std::int32_t>(PIClientFunctions_t::HandleMouseEvent),
                                    &record);
    });
}

/// What comes while others are at work. \return whether it has to wait, or is answered already
bool putOff(PIClientFunctions_t function, void* object, PIFunctionParams_t* params) {
    switch (function) {
        case PIClientFunctions_t::Close:
            // The entry that is interrupted is at work on the object, and ends before it.
            ClientFunctionMap::forget(object);
            EntryScope::atEnd([object, orderly = params != nullptr] {
                PIFunctionParams_t record;
                PIApplication_v0_5_0::s_Close(object, orderly ? &record : nullptr);
            });
            if (params) params->integers[Slot::Status] = 0;
            return true;
        case PIClientFunctions_t::ListenToEvents:
            if (params) putOffEvent(*params);
            return true;
        case PIClientFunctions_t::HandleMouseEvent:
            if (!params) return true;
            params->integers[Slot::Status] = 0;
            if (const auto* event = static_cast<const PIGUI::PIMouseEvent*>(params->pointer(Slot::EventData));
                event && params->integer(Slot::EventCode) ==
                             static_cast<std::int32_t>(PIGUI::PIMouseEventType_t::LeftRelease))
                putOffRelease(*event);
            return true;
        case PIClientFunctions_t::PreDrawOnRefresh:
            if (EntryScope::isInDialog()) return false;
            frameMissed = true;
            EntryScope::wait({&frameMissed}, [] {
                if (std::exchange(frameMissed, false)) PICommon::forceOpenGLRedraw();
            });
            return true;
        default:
            return false;
    }
}

/// Whether the status of the operation is that of its success.
bool tellsSuccess(PIClientFunctions_t function) {
    switch (function) {
        case PIClientFunctions_t::StartUp:
        case PIClientFunctions_t::Callback:
        case PIClientFunctions_t::Close:
        case PIClientFunctions_t::CloseLocation:
        case PIClientFunctions_t::OpenLocation:
        case PIClientFunctions_t::HandleConfigOption:
        case PIClientFunctions_t::SaveConfigOptions:
        case PIClientFunctions_t::ConfigureCommandLine:
            return true;
        default:
            return false;
    }
}

void* currentObject() {
    const auto close = g_ClientMessageMap.find(PIClientFunctions_t::Close);
    return close == g_ClientMessageMap.end() ? nullptr : close->second.second;
}

void freeAll(void* object) {
    PIApplication_v0_5_0::s_Close(object, nullptr);
    delete std::exchange(g_PI_GarbageCollector, nullptr);
    freeFunctors();
}

}  // namespace

void ClientFunctionMap::closeApplication() {
    PIApplication_v0_5_0::s_Close(currentObject(), nullptr);
}

void ClientFunctionMap::cleanUp() {
    void* const object = currentObject();
    if (!EntryScope::isNested()) return freeAll(object);
    forget(object);
    EntryScope::atEnd([object] { freeAll(object); });
}

void ClientFunctionMap::replaceApplication(std::unique_ptr<PIApp::PIApplication_v1_24> application) {
    closeApplication();
    for (std::int32_t number = 0; number < kClientFunctionCount; ++number)
        g_ClientMessageMap[static_cast<PIClientFunctions_t>(number)] = {
            kAdapters[static_cast<std::size_t>(number)], nullptr};
    // Only now, when no more memory is needed: a map that is not whole must not hold the object.
    void* const object = application.release();
    for (auto& [number, entry] : g_ClientMessageMap) entry.second = object;
}

void ClientFunctionMap::forget(void* object) {
    for (auto& [number, entry] : g_ClientMessageMap)
        if (entry.second == object) entry.second = nullptr;
}

std::int32_t ClientFunctionMap::dispatch(std::int32_t number, PIFunctionParams_t* params) {
    const auto at = g_ClientMessageMap.find(static_cast<PIClientFunctions_t>(number));
    if (at == g_ClientMessageMap.end() || !at->second.first) return 0;
    const PIClientFunctions_t function = at->first;
    const auto [adapter, object] = at->second;
    if (object && EntryScope::isNested() && putOff(function, object, params)) return 0;
    if (!object && params && tellsSuccess(function)) params->integers[Slot::Status] = kStatusClosed;
    const EntryScope scope;
    const std::int32_t status = adapter(object, params);
    if (function == PIClientFunctions_t::PreDrawOnRefresh) frameMissed = false;
    return status;
}
