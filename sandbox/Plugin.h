#pragma once

#include <QString>
#include <filesystem>
#include <functional>
#include <memory>
#include <variant>

#include "pi/PIClientFunctions.h"
#include "pi/PIEvents.h"
#include "sandbox/PluginLibrary.h"

namespace sandbox {

class CallTrace;
class Log;

/// One plug-in from its loading to its unloading. Its address is the instance handle that it passes back
/// with every service call.
class Plugin {
  public:
    enum class State { Loaded, Initialized, Started, Closing, Closed, CleanedUp };

    Plugin(PluginLibrary library, Log& log, CallTrace& trace);
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    const std::filesystem::path& path() const { return library_.path(); }
    bool isOf(const PluginLibrary& library) const { return library_.isSame(library); }
    /// What the plug-in calls itself, its file's name until it has been asked.
    const QString& name() const { return name_; }
    State state() const { return state_; }
    /// From inside StartUp on until Close has returned.
    bool isRunning() const { return state_ == State::Started || state_ == State::Closing; }
    /// From initialisation until clean-up.
    bool isInitialized() const { return state_ != State::Loaded && state_ != State::CleanedUp; }

    void initialize(PIServiceTable& services);
    /// \return the plug-in's own status, 0 for success
    int startUp();
    int close();
    void cleanUp();
    /// \return whether the library is gone from the process
    bool unload() { return library_.unload(); }

    /// The text that one of the descriptive events answers with.
    QString text(PIClientFunctions_t event);
    void event(PIApplicationEvents_t code, const void* data = nullptr);
    /// \return whether the plug-in consumed the event
    bool mouse(PIGUI::PIMouseEventType_t type, PIGUI::PIMouseEvent event);
    void preDraw(int width, int height);
    /// Calls into the plug-in's code in any other way, such as a callback that it registered. `what` names
    /// the call; an exception that leaves it is reported as a misuse.
    void enter(const QString& what, const std::function<void()>& call);

  private:
    void guard(const QString& what, const std::function<void()>& call);
    void dispatch(PIClientFunctions_t number, PIFunctionParams_t& params);

    PluginLibrary library_;
    Log& log_;
    CallTrace& trace_;
    QString name_;
    State state_ = State::Loaded;
};

}  // namespace sandbox
