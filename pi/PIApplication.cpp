#include "pi/PIApplication.h"

#include "pi/ClientFunctionMap.h"
#include "pi/EntryScope.h"
#include "pi/Guard.h"

// Defaults whose parameters keep them out of the class.

int PIApplication_v0_5_0::openLocation(const std::string&, int, PIData::PINetworkProtocol_t) {
    return 0;
}
int PIApplication_v0_5_0::handleConfigOption(const std::string&, const std::string&) {
    return 0;
}
void PIApplication_v0_5_0::listenToEvents(PIApplicationEvents_t, void*) {}
void PIApplication_v0_5_0::drawOnRefresh(int, int) {}
int PIApplication_v0_5_7::StartUp(const std::vector<std::string>&) {
    return StartUp();
}
void PIApplication_v1_0::preDrawOnRefresh(int, int) {}
int PIApplication_v1_2::handleMouseEvent(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) {
    return 0;
}
void PIApplication_v1_4::initializeTerrainRasterSet(PIFunctionParams_t&) {}
void PIApplication_v1_4::parseTerrainRasterSetToken(PIFunctionParams_t&) {}
void PIApplication_v1_4::getTerrainRasterSetTokenString(PIFunctionParams_t&) {}
void PIApplication_v1_4::getTerrainRasterNode(PIFunctionParams_t&) {}
void PIApplication_v1_4::dereferenceTerrainRasterSet(PIFunctionParams_t&) {}
void PIApplication_v1_4::getTerrainRasterSetInfo(PIFunctionParams_t&) {}

namespace PIApp {

int PIApplication_v1_20::StartUp(const CommandLineArguments& arguments) {
    return StartUp(arguments.arguments());
}
int PIApplication_v1_20::ConfigureCommandLine(void*) {
    return 0;
}

}  // namespace PIApp

namespace {

using Slot = PIParameterName_t;

/// The adapters' common part: null arguments do nothing, and nothing is thrown across.
/// Handlers are registered with a pointer to PIApplication_v1_24, from which each level converts.
template <typename Level, typename Operation>
std::int32_t adapt(const char* entry, void* object, PIFunctionParams_t* params, Operation&& operation) {
    if (!object || !params) return 0;
    return guarded(entry, 0, [&] {
        operation(static_cast<Level&>(*static_cast<PIApp::PIApplication_v1_24*>(object)), *params);
        return 0;
    });
}

/// The same for an operation whose result is its status; of one that throws it says so.
template <typename Level, typename Operation>
std::int32_t adaptStatus(const char* entry, void* object, PIFunctionParams_t* params, Operation&& operation) {
    if (!object || !params) return 0;
    std::int32_t status = kStatusFailed;
    adapt<Level>(entry, object, params,
                 [&](auto& application, auto& record) { status = operation(application, record); });
    return guarded(entry, 0, [&] {
        params->integers[Slot::Status] = status;
        return 0;
    });
}

}  // namespace

std::int32_t PIApplication_v0_5_0::s_Callback(void* object, PIFunctionParams_t* params) {
    return adaptStatus<PIApplication_v0_5_0>("Callback", object, params,
                                             [](auto& application, auto&) { return application.Callback(); });
}

std::int32_t PIApplication_v0_5_0::s_Close(void* object, PIFunctionParams_t* params) {
    if (!object) return 0;
    // First of all: what the host dispatches while the object closes, a second Close not least, must not
    // find an object that is half gone.
    ClientFunctionMap::forget(object);
    adaptStatus<PIApplication_v0_5_0>("Close", object, params,
                                      [](auto& application, auto&) { return application.Close(); });
    return guarded("Close", 0, [&] {
        delete static_cast<PIApp::PIApplication_v1_24*>(object);
        EntryScope::clear();
        return 0;
    });
}

std::int32_t PIApplication_v0_5_0::s_Name(void* object, PIFunctionParams_t* params) {
    return adapt<PIApplication_v0_5_0>("Name", object, params, [](auto& application, auto& record) {
        record.strings[Slot::NameText] = application.Name();
    });
}

std::int32_t PIApplication_v0_5_0::s_CloseLocation(void* object, PIFunctionParams_t* params) {
    return adaptStatus<PIApplication_v0_5_0>("CloseLocation", object, params, [](auto& application, auto&) {
        return application.closeLocation();
    });
}

std::int32_t PIApplication_v0_5_0::s_OpenLocation(void* object, PIFunctionParams_t* params) {
    return adaptStatus<PIApplication_v0_5_0>(
        "OpenLocation", object, params, [](auto& application, auto& record) {
            const auto protocol =
                static_cast<PIData::PINetworkProtocol_t>(record.integer(Slot::LocationProtocol));
            return application.openLocation(record.string(Slot::LocationName),
                                            record.integer(Slot::LocationPort), protocol);
        });
}

std::int32_t PIApplication_v0_5_0::s_FindNetworkLocation(void* object, PIFunctionParams_t* params) {
    return adapt<PIApplication_v0_5_0>(
        "FindNetworkLocation", object, params, [](auto& application, auto& record) {
            record.strings[Slot::LocationName] = application.findNetworkLocation();
        });
}

std::int32_t PIApplication_v0_5_0::s_HandleConfigOption(void* object, PIFunctionParams_t* params) {
    return adaptStatus<PIApplication_v0_5_0>(
        "HandleConfigOption", object, params, [](auto& application, auto& record) {
            return application.handleConfigOption(record.string(Slot::ConfigKey),
                                                  record.string(Slot::ConfigValue));
        });
}

std::int32_t PIApplication_v0_5_0::s_SaveConfigOptions(void* object, PIFunctionParams_t* params) {
    return adaptStatus<PIApplication_v0_5_0>(
        "SaveConfigOptions", object, params,
        [](auto& application, auto&) { return application.saveConfigOptions(); });
}

std::int32_t PIApplication_v0_5_0::s_ListenToEvents(void* object, PIFunctionParams_t* params) {
    return adapt<PIApplication_v0_5_0>("ListenToEvents", object, params, [](auto& application, auto& record) {
        application.listenToEvents(static_cast<PIApplicationEvents_t>(record.integer(Slot::EventCode)),
                                   record.pointer(Slot::EventData));
    });
}

std::int32_t PIApplication_v0_5_0::s_DrawOnRefresh(void* object, PIFunctionParams_t* params) {
    return adapt<PIApplication_v0_5_0>("DrawOnRefresh", object, params, [](auto& application, auto& record) {
        application.drawOnRefresh(record.integer(Slot::Width), record.integer(Slot::Height));
    });
}

std::int32_t PIApplication_v0_5_7::s_StartUp(void* object, PIFunctionParams_t* params) {
    return adaptStatus<PIApplication_v0_5_7>("StartUp", object, params, [](auto& application, auto&) {
        return application.StartUp(std::vector<std::string>());
    });
}

std::int32_t PIApplication_v1_0::s_LoadInHALVIS(void* object, PIFunctionParams_t* params) {
    return adapt<PIApplication_v1_0>("LoadInHALVIS", object, params,
                                     [](auto& application, auto&) { application.LoadInHALVIS(); });
}

std::int32_t PIApplication_v1_0::s_LoadInGrapher(void* object, PIFunctionParams_t* params) {
    return adapt<PIApplication_v1_0>("LoadInGrapher", object, params,
                                     [](auto& application, auto&) { application.LoadInGrapher(); });
}

std::int32_t PIApplication_v1_0::s_LoadInScenarioEditor(void* object, PIFunctionParams_t* params) {
    return adapt<PIApplication_v1_0>("LoadInScenarioEditor", object, params,
                                     [](auto& application, auto&) { application.LoadInScenarioEditor(); });
}

std::int32_t PIApplication_v1_0::s_LoadInPluginLogger(void* object, PIFunctionParams_t* params) {
    return adapt<PIApplication_v1_0>("LoadInPluginLogger", object, params,
                                     [](auto& application, auto&) { application.LoadInPluginLogger(); });
}

std::int32_t PIApplication_v1_0::s_PreDrawOnRefresh(void* object, PIFunctionParams_t* params) {
    return adapt<PIApplication_v1_0>("PreDrawOnRefresh", object, params, [](auto& application, auto& record) {
        application.preDrawOnRefresh(record.integer(Slot::Width), record.integer(Slot::Height));
    });
}

std::int32_t PIApplication_v1_2::s_HandleMouseEvent(void* object, PIFunctionParams_t* params) {
    return adapt<PIApplication_v1_2>("HandleMouseEvent", object, params, [](auto& application, auto& record) {
        record.integers[Slot::Status] = 0;
        const auto* event = static_cast<const PIGUI::PIMouseEvent*>(record.pointer(Slot::EventData));
        if (!event) return;
        const auto type = static_cast<PIGUI::PIMouseEventType_t>(record.integer(Slot::EventCode));
        record.integers[Slot::Status] = application.handleMouseEvent(type, *event);
    });
}

#define TERRAIN_ADAPTER(operation)                                                                         \
    std::int32_t PIApplication_v1_4::s_##operation(void* object, PIFunctionParams_t* params) {             \
        return adapt<PIApplication_v1_4>(#operation, object, params, [](auto& application, auto& record) { \
            application.operation(record);                                                                 \
        });                                                                                                \
    }
TERRAIN_ADAPTER(initializeTerrainRasterSet)
TERRAIN_ADAPTER(parseTerrainRasterSetToken)
TERRAIN_ADAPTER(getTerrainRasterSetTokenString)
TERRAIN_ADAPTER(getTerrainRasterNode)
TERRAIN_ADAPTER(dereferenceTerrainRasterSet)
TERRAIN_ADAPTER(getTerrainRasterSetInfo)
#undef TERRAIN_ADAPTER

#define INFO_ADAPTER(operation)                                                                            \
    std::int32_t PIApplication_v1_7::s_##operation(void* object, PIFunctionParams_t* params) {             \
        return adapt<PIApplication_v1_7>(#operation, object, params, [](auto& application, auto& record) { \
            record.strings[Slot::InfoText] = application.operation();                                      \
        });                                                                                                \
    }
INFO_ADAPTER(Description)
INFO_ADAPTER(Author)
INFO_ADAPTER(Version)
INFO_ADAPTER(URL)
INFO_ADAPTER(ContactInfo)
#undef INFO_ADAPTER

std::int32_t PIApplication_v1_13::s_LoadInHALVIS10(void* object, PIFunctionParams_t* params) {
    return adapt<PIApplication_v1_13>("LoadInHALVIS10", object, params,
                                      [](auto& application, auto&) { application.LoadInHALVIS10(); });
}

namespace PIApp {

std::int32_t PIApplication_v1_20::s_StartUp(void* object, PIFunctionParams_t* params) {
    if (!object || !params) return 0;
    const auto* provider =
        static_cast<const CommandLineArgumentsProvider*>(params->pointer(Slot::CommandLineArguments));
    if (!provider) return PIApplication_v0_5_7::s_StartUp(object, params);
    return adaptStatus<PIApplication_v1_20>("StartUp", object, params, [&](auto& application, auto&) {
        return application.StartUp(CommandLineArguments(provider->arguments()));
    });
}

std::int32_t PIApplication_v1_20::s_ConfigureCommandLine(void* object, PIFunctionParams_t* params) {
    return adaptStatus<PIApplication_v1_20>(
        "ConfigureCommandLine", object, params, [](auto& application, auto& record) {
            void* const configuration = record.pointers[Slot::CommandLineConfiguration];
            return application.ConfigureCommandLine(configuration);
        });
}

std::int32_t PIApplication_v1_24::s_LoadInGrapher10(void* object, PIFunctionParams_t* params) {
    return adapt<PIApplication_v1_24>("LoadInGrapher10", object, params,
                                      [](auto& application, auto&) { application.LoadInGrapher10(); });
}

}  // namespace PIApp
