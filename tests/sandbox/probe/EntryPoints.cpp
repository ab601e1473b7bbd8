#include <cstdio>

#include "Gallery.h"
#include "Services.h"
#include "pi/PluginVersions.h"

#ifndef PROBE_START_STATUS
#define PROBE_START_STATUS 0
#endif

namespace {

using Slot = PIParameterName_t;

void dispatchMouse(PIFunctionParams_t& params) {
    const auto* event = static_cast<const PIGUI::PIMouseEvent*>(params.pointer(Slot::EventData));
    char text[100];
    std::snprintf(text, sizeof text, "mouse %d at %d,%d modifiers %u wheel %d",
                  params.integer(Slot::EventCode), event->x, event->y, event->modifiers, event->wheelDelta);
    if (probe::gallery->reportsMouse()) probe::say(text);
    params.integers[Slot::Status] = probe::gallery->consumesMouse() ? 1 : 0;
}

void dispatchEvent(PIFunctionParams_t& params) {
    const auto* id = static_cast<const std::uint64_t*>(params.pointer(Slot::EventData));
    probe::say("event " + std::to_string(params.integer(Slot::EventCode)) +
               (id ? " id " + std::to_string(*id) : std::string()));
}

void startUp(PIFunctionParams_t& params) {
    const auto* provider =
        static_cast<const PIApp::CommandLineArgumentsProvider*>(params.pointer(Slot::CommandLineArguments));
    probe::gallery = new probe::Gallery;
    if (provider) probe::say("started with " + std::to_string(provider->arguments().size()) + " arguments");
    params.integers[Slot::Status] = PROBE_START_STATUS;
}

}  // namespace

namespace probe {
Gallery* gallery = nullptr;
}

HPI_EXPORT void HPI_InitializeFunctionMap(PIServiceTable* table, void* handle) {
    probe::services = table;
    probe::instance = handle;
}
HPI_EXPORT std::int32_t HPI_PluginDispatchFunction(std::int32_t number, PIFunctionParams_t* params, void*,
                                                   void*, void*, void*) {
    switch (static_cast<PIClientFunctions_t>(number)) {
        case PIClientFunctions_t::StartUp:
            startUp(*params);
            break;
        case PIClientFunctions_t::Close:
            probe::gallery->close();
            delete std::exchange(probe::gallery, nullptr);
            break;
        case PIClientFunctions_t::Name:
            params->strings[Slot::NameText] = "Probe";
            break;
        case PIClientFunctions_t::Version:
            params->strings[Slot::InfoText] = "1.0";
            break;
        case PIClientFunctions_t::ListenToEvents:
            if (probe::gallery) dispatchEvent(*params);
            break;
        case PIClientFunctions_t::HandleMouseEvent:
            dispatchMouse(*params);
            break;
        case PIClientFunctions_t::PreDrawOnRefresh:
            probe::gallery->refresh(params->integer(Slot::Width), params->integer(Slot::Height));
            break;
        default:
            break;
    }
    return 0;
}
#ifndef PROBE_WITHOUT_CLEAN_UP
HPI_EXPORT void HPI_CleanUpPlugin() {
    probe::freeCallbacks();
    probe::services = nullptr;
}
#endif
