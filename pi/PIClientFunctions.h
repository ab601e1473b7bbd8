#pragma once

#include <cstdint>

/// Numbers of the events that the host dispatches through HPI_PluginDispatchFunction.
enum class PIClientFunctions_t : std::int32_t {
    StartUp = 0,
    Callback = 1,
    Close = 2,
    Name = 3,
    CloseLocation = 4,
    OpenLocation = 5,
    FindNetworkLocation = 6,
    HandleConfigOption = 7,
    SaveConfigOptions = 8,
    ListenToEvents = 9,
    DrawOnRefresh = 10,
    LoadInHALVIS = 11,
    LoadInGrapher = 12,
    LoadInScenarioEditor = 13,
    LoadInPluginLogger = 14,
    PreDrawOnRefresh = 15,
    HandleMouseEvent = 16,
    InitializeTerrainRasterSet = 17,
    ParseTerrainRasterSetToken = 18,
    GetTerrainRasterSetTokenString = 19,
    GetTerrainRasterNode = 20,
    DereferenceTerrainRasterSet = 21,
    GetTerrainRasterSetInfo = 22,
    Description = 23,
    Author = 24,
    Version = 25,
    URL = 26,
    ContactInfo = 27,
    LoadInHALVIS10 = 28,
    ConfigureCommandLine = 29,
    LoadInGrapher10 = 30,
};

inline constexpr std::int32_t kClientFunctionCount = 31;

/// What Status says where the operation had no result of its own.
inline constexpr std::int32_t kStatusFailed = 1;   ///< it has thrown
inline constexpr std::int32_t kStatusClosed = -1;  ///< the plug-in was closed: nothing has happened

/// Names a slot of PIFunctionParams_t. A slot is found by the type of its value and this number, so the
/// same number may name an integer and a string.
enum class PIParameterName_t : std::int16_t {
    Status = 0,            ///< integer: result of HandleMouseEvent, not 0 when the event was consumed; of
                           ///< StartUp, Callback, Close, CloseLocation, OpenLocation, HandleConfigOption,
                           ///< SaveConfigOptions and ConfigureCommandLine, 0 for success
    NameText = 0,          ///< string: result of Name
    InfoText = 3,          ///< string: result of Description, Author, Version, URL, ContactInfo
    LocationName = 4,      ///< string: the location OpenLocation is to open; result of FindNetworkLocation
    LocationPort = 5,      ///< integer: its port
    LocationProtocol = 6,  ///< integer: its PIData::PINetworkProtocol_t
    ConfigKey = 7,         ///< string: the option HandleConfigOption is given
    ConfigValue = 8,       ///< string: its value
    EventCode =
        11,  ///< integer: PIApplicationEvents_t of ListenToEvents, PIMouseEventType_t of HandleMouseEvent
    EventData = 12,  ///< pointer: what the event is about; PIGUI::PIMouseEvent of HandleMouseEvent
    Width = 13,      ///< integer: width of the view in pixels, DrawOnRefresh and PreDrawOnRefresh
    Height = 14,     ///< integer: height of the view in pixels
    CommandLineConfiguration = 22,  ///< pointer: PIApp::CommandLineConfiguration of ConfigureCommandLine
    CommandLineArguments = 23,      ///< pointer: const PIApp::CommandLineArgumentsProvider of StartUp
};
