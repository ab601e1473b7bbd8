#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>

#include <dlfcn.h>

#include "pi/HostContract.h"

/// A plug-in and its life, in the order that the contract asks for. What goes wrong is thrown. Everything
/// happens on one thread.
class Plugin {
  public:
    /// 1. Loads the library and finds its exports. All nine must be there, so that a library that is no
    /// plug-in is refused by name before anything of it runs.
    Plugin(const std::string& path, std::int32_t hostBuildNumber)
        // Absolute: dlopen would look for a bare name elsewhere. Local: two plug-ins may use the same names.
        : path_(std::filesystem::absolute(path)), library_(dlopen(path_.c_str(), RTLD_NOW | RTLD_LOCAL)) {
        if (!library_) throw std::runtime_error(dlerror());
        try {
            for (const char* name : {"HPI_VersionInfo", "HPI_GetCompilerVersion", "HPI_IsDebugMode"})
                find<void()>(name);
            initialize_ = find<void(PIServiceTable*, void*)>("HPI_InitializeFunctionMap");
            dispatch_ = find<Dispatch>("HPI_PluginDispatchFunction");
            cleanUp_ = find<void()>("HPI_CleanUpPlugin");
            if (find<std::int32_t(std::int32_t)>("HPI_VersionInfoEx")(0) != 1 ||
                find<std::int32_t()>("HPI_MinimumVersion")() > hostBuildNumber ||
                find<std::int32_t()>("HPI_GetBitWidth")() != 64)
                throw std::runtime_error("the plug-in does not fit this host");
        } catch (...) {
            dlclose(library_);
            throw;
        }
    }
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;
    /// Whatever happened: what has begun is ended.
    ~Plugin() { end(); }

    /// 2. and 3. `this` is how the host will know the plug-in again: it comes back as the identity of each
    /// service call. The services must outlive the plug-in.
    void start(PIServiceTable& services) {
        initialize_(&services, this);
        initialized_ = started_ = true;
        PIFunctionParams_t record;  // may hold the command line; an empty one will do
        dispatch(PIClientFunctions_t::StartUp, record);
        if (record.integer(PIParameterName_t::Status) != 0)
            throw std::runtime_error("the plug-in cannot start");  // and ~Plugin closes it
    }
    /// 4. Never from within a service call, a callback or another dispatch.
    void close() {
        PIFunctionParams_t record;
        if (std::exchange(started_, false)) dispatch(PIClientFunctions_t::Close, record);
    }
    /// 5. From here on no callback may be called: the objects are gone, and then their code.
    void unload() {
        end();
        if (dlopen(path_.c_str(), RTLD_NOW | RTLD_NOLOAD))
            throw std::runtime_error("the plug-in is still loaded");
    }

    /// One mouse event of the view. \return whether the plug-in consumed it
    bool mouse(PIGUI::PIMouseEventType_t type, int x, int y) {
        PIGUI::PIMouseEvent event{x, y, 0, 0};
        PIFunctionParams_t record;
        record.integers[PIParameterName_t::EventCode] = static_cast<std::int32_t>(type);
        record.pointers[PIParameterName_t::EventData] = &event;
        dispatch(PIClientFunctions_t::HandleMouseEvent, record);
        if (record.integer(PIParameterName_t::Status) != 0) return true;
        // The second press of a user who clicks fast, to a plug-in that does not know double clicks.
        using Type = PIGUI::PIMouseEventType_t;
        return type == Type::LeftDoubleClick && mouse(Type::LeftPress, x, y);
    }

  private:
    using Dispatch = std::int32_t(std::int32_t, void*, void*, void*, void*, void*);

    template <typename Function>
    Function* find(const char* name) {
        if (void* const address = dlsym(library_, name)) return reinterpret_cast<Function*>(address);
        throw std::runtime_error(std::string("the plug-in does not export ") + name);
    }
    void dispatch(PIClientFunctions_t event, PIFunctionParams_t& record) {
        dispatch_(static_cast<std::int32_t>(event), &record, nullptr, nullptr, nullptr, nullptr);
    }
    void end() {
        close();
        if (std::exchange(initialized_, false)) cleanUp_();
        if (library_) dlclose(std::exchange(library_, nullptr));
    }

    std::string path_;
    void* library_;
    void (*initialize_)(PIServiceTable*, void*) = nullptr;
    Dispatch* dispatch_ = nullptr;
    void (*cleanUp_)() = nullptr;
    bool initialized_ = false, started_ = false;
};
