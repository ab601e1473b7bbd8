#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "kit/Host.h"

namespace kit {

/// The library under test, loaded and reached through its exports. Each entry is watched: an exception that
/// comes out is a fault, and so is a result of a dispatch that is not 0. What was begun is ended by the
/// destructor, in the order that the contract asks for.
class Plugin {
    /// Valid during StartUp. Who keeps it is told so, and lives.
    class CommandLine final : public PIApp::CommandLineArgumentsProvider {
      public:
        explicit CommandLine(Findings& findings) : findings_(findings) {}
        std::vector<std::string> arguments() const override {
            if (isDue) return {"host", "--verbose"};
            findings_.fault("the host's command line is asked for after StartUp has returned");
            return {};
        }
        bool isDue = false;

      private:
        Findings& findings_;
    };

  public:
    using Event = PIClientFunctions_t;
    using Mouse = PIGUI::PIMouseEventType_t;

    /// Loads the library and finds the exports.
    /// \throws std::runtime_error that says what is missing
    Plugin(const std::string& path, Findings& findings, Situation& situation);
    ~Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    // The exports that tell of versions.
    double (*versionInfo)() = nullptr;
    std::int32_t (*versionInfoEx)(std::int32_t) = nullptr;
    std::int32_t (*minimumVersion)() = nullptr;
    std::int32_t (*compilerVersion)() = nullptr;
    std::int32_t (*bitWidth)() = nullptr;
    std::int32_t (*isDebugMode)() = nullptr;

    /// From now on this host's phase follows what is done here. The host must outlive the plug-in's clean-up.
    void initialise(Host& host);
    /// Any number, also while another entry is at work.
    void dispatch(std::int32_t number, PIFunctionParams_t* record);
    /// \return its Status
    std::int32_t dispatch(Event event);
    /// StartUp. \return whether it has started; if not, nothing may be left
    bool start();
    /// Close, and what it leaves is told.
    void close(bool withRecord = true);
    void cleanUp();
    /// Ends what is left to end, and unloads. That the library is still mapped then is a fault.
    void unload();

    void event(PIApplicationEvents_t code, std::uint64_t id);
    /// \return whether it was consumed
    bool mouse(Mouse type, int x, int y, std::uint32_t modifiers = 0, int wheel = 0);
    void frame();
    /// Whatever else enters the plug-in: a callback, an observer.
    void enter(const std::string& name, const std::function<void()>& call);
    void call(const std::string& name, FunctorTwoParams__* callback, PIObject* sender, void* data);

    bool isStarted() const { return host_ && host_->phase == Phase::Started; }
    /// Whether a library of that path is in this process.
    static bool isMapped(const std::string& path);

  private:
    template <typename Function>
    void find_(Function*& function, const char* name);
    void closed_();
    void cleanedUp_(bool judges);

    std::string path_;
    Findings& findings_;
    Situation& situation_;
    CommandLine commandLine_{findings_};
    void* library_ = nullptr;
    void (*initialise_)(PIServiceTable*, void*) = nullptr;
    std::int32_t (*dispatch_)(std::int32_t, void*, void*, void*, void*, void*) = nullptr;
    void (*cleanUp_)() = nullptr;
    Host* host_ = nullptr;
    int depth_ = 0;  // entries that are at work
    // Close or clean-up came from inside another entry, after which it takes effect.
    bool closesAtEnd_ = false, cleansAtEnd_ = false;
};

}  // namespace kit
