#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "pi/HostObservers.h"
#include "pi/HostStructures.h"
#include "pi/PIEvents.h"
#include "pi/PIFunctionParams.h"
#include "pi/PIObject.h"

/// The versioned application classes. Each level adds virtual operations with do-nothing defaults, and
/// the static adapters that the host's dispatch reaches them through.
///
/// An adapter takes (the plug-in object, PIFunctionParams_t*) and returns a status. A null object or
/// record gives 0 and nothing happens. It reads its arguments from the record's slots, calls the
/// operation, writes the result into its slot and returns 0. No exception leaves it.
///
/// An operation that a plug-in does not override behaves as if it were not called: the defaults do
/// nothing and yield the neutral result, and a newer form's default hands on to the older form.
class PIApplication_v0_5_0 : public PIObject {
  public:
    virtual int StartUp() { return 0; }
    virtual int Callback() { return 0; }
    virtual int Close() { return 0; }
    virtual std::string Name() const { return "Unknown"; }
    virtual int closeLocation() { return 0; }
    virtual int openLocation(const std::string& name, int port, PIData::PINetworkProtocol_t protocol);
    /// Names a network location, empty when the plug-in knows none.
    virtual std::string findNetworkLocation() { return {}; }
    virtual int handleConfigOption(const std::string& key, const std::string& value);
    virtual int saveConfigOptions() { return 0; }
    virtual void listenToEvents(PIApplicationEvents_t event, void* data);
    virtual void drawOnRefresh(int widthPixels, int heightPixels);

    static std::int32_t s_Callback(void* object, PIFunctionParams_t* params);
    /// Calls Close, keeps its result in the status slot, then destroys the object: the host's Close is
    /// the object's end of life. With a null record the object is destroyed without calling Close. No
    /// event reaches the object from the beginning of Close on.
    static std::int32_t s_Close(void* object, PIFunctionParams_t* params);
    static std::int32_t s_Name(void* object, PIFunctionParams_t* params);
    static std::int32_t s_CloseLocation(void* object, PIFunctionParams_t* params);
    static std::int32_t s_OpenLocation(void* object, PIFunctionParams_t* params);
    static std::int32_t s_FindNetworkLocation(void* object, PIFunctionParams_t* params);
    static std::int32_t s_HandleConfigOption(void* object, PIFunctionParams_t* params);
    static std::int32_t s_SaveConfigOptions(void* object, PIFunctionParams_t* params);
    static std::int32_t s_ListenToEvents(void* object, PIFunctionParams_t* params);
    static std::int32_t s_DrawOnRefresh(void* object, PIFunctionParams_t* params);
};

class PIApplication_v0_5_7 : public PIApplication_v0_5_0 {
  public:
    using PIApplication_v0_5_0::StartUp;
    virtual int StartUp(const std::vector<std::string>& arguments);

    /// Starts a plug-in of a host that gives no command line: the argument vector is empty.
    static std::int32_t s_StartUp(void* object, PIFunctionParams_t* params);
};

class PIApplication_v1_0 : public PIApplication_v0_5_7 {
  public:
    virtual void LoadInHALVIS() {}
    virtual void LoadInGrapher() {}
    virtual void LoadInScenarioEditor() {}
    virtual void LoadInPluginLogger() {}
    virtual void preDrawOnRefresh(int widthPixels, int heightPixels);

    static std::int32_t s_LoadInHALVIS(void* object, PIFunctionParams_t* params);
    static std::int32_t s_LoadInGrapher(void* object, PIFunctionParams_t* params);
    static std::int32_t s_LoadInScenarioEditor(void* object, PIFunctionParams_t* params);
    static std::int32_t s_LoadInPluginLogger(void* object, PIFunctionParams_t* params);
    static std::int32_t s_PreDrawOnRefresh(void* object, PIFunctionParams_t* params);
};

class PIApplication_v1_2 : public PIApplication_v1_0 {
  public:
    /// \return non-zero when the event was consumed: the host does not use it then
    virtual int handleMouseEvent(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event);

    /// The result travels back in the status slot: 0 also when the event is missing or handling it failed.
    static std::int32_t s_HandleMouseEvent(void* object, PIFunctionParams_t* params);
};

class PIApplication_v1_4 : public PIApplication_v1_2 {
  public:
    /// The terrain raster family; a plug-in that serves no terrain leaves it alone.
    virtual void initializeTerrainRasterSet(PIFunctionParams_t& params);
    virtual void parseTerrainRasterSetToken(PIFunctionParams_t& params);
    virtual void getTerrainRasterSetTokenString(PIFunctionParams_t& params);
    virtual void getTerrainRasterNode(PIFunctionParams_t& params);
    virtual void dereferenceTerrainRasterSet(PIFunctionParams_t& params);
    virtual void getTerrainRasterSetInfo(PIFunctionParams_t& params);

    static std::int32_t s_initializeTerrainRasterSet(void* object, PIFunctionParams_t* params);
    static std::int32_t s_parseTerrainRasterSetToken(void* object, PIFunctionParams_t* params);
    static std::int32_t s_getTerrainRasterSetTokenString(void* object, PIFunctionParams_t* params);
    static std::int32_t s_getTerrainRasterNode(void* object, PIFunctionParams_t* params);
    static std::int32_t s_dereferenceTerrainRasterSet(void* object, PIFunctionParams_t* params);
    static std::int32_t s_getTerrainRasterSetInfo(void* object, PIFunctionParams_t* params);
};

class PIApplication_v1_7 : public PIApplication_v1_4 {
  public:
    virtual std::string Description() const { return {}; }
    virtual std::string Author() const { return {}; }
    virtual std::string Version() const { return {}; }
    virtual std::string URL() const { return {}; }
    virtual std::string ContactInfo() const { return {}; }

    static std::int32_t s_Description(void* object, PIFunctionParams_t* params);
    static std::int32_t s_Author(void* object, PIFunctionParams_t* params);
    static std::int32_t s_Version(void* object, PIFunctionParams_t* params);
    static std::int32_t s_URL(void* object, PIFunctionParams_t* params);
    static std::int32_t s_ContactInfo(void* object, PIFunctionParams_t* params);
};

class PIApplication_v1_13 : public PIApplication_v1_7 {
  public:
    virtual void LoadInHALVIS10() {}

    static std::int32_t s_LoadInHALVIS10(void* object, PIFunctionParams_t* params);
};

namespace PIApp {

/// The command line of the host, as a plug-in sees it.
class CommandLineArguments {
  public:
    explicit CommandLineArguments(std::vector<std::string> arguments) : arguments_(std::move(arguments)) {}
    const std::vector<std::string>& arguments() const { return arguments_; }

  private:
    std::vector<std::string> arguments_;
};

class PIApplication_v1_20 : public PIApplication_v1_13 {
  public:
    using PIApplication_v1_13::StartUp;
    virtual int StartUp(const CommandLineArguments& arguments);
    /// \param configuration what the host put into the CommandLineConfiguration slot, a
    /// PIApp::CommandLineConfiguration; may be null
    virtual int ConfigureCommandLine(void* configuration);

    /// Falls back to the v0_5_7 adapter when the host offers no command line.
    static std::int32_t s_StartUp(void* object, PIFunctionParams_t* params);
    static std::int32_t s_ConfigureCommandLine(void* object, PIFunctionParams_t* params);
};

class PIApplication_v1_24 : public PIApplication_v1_20 {
  public:
    virtual void LoadInGrapher10() {}

    static std::int32_t s_LoadInGrapher10(void* object, PIFunctionParams_t* params);
};

}  // namespace PIApp
