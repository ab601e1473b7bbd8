#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include <dlfcn.h>

#include "pi/HostContract.h"

/// The plug-in library as a host has it: loaded by its path, reached through its exports alone.
class LoadedPlugin {
  public:
    using Function = PIClientFunctions_t;

    /// \param initialise whether the library learns of its host; else it is only loaded
    explicit LoadedPlugin(PIServiceTable& host, bool initialise = true)
        : library_(dlopen(OE_PLUGIN, RTLD_NOW | RTLD_LOCAL)) {
        if (!library_) throw std::runtime_error(dlerror());
        dispatch_ = symbol<decltype(dispatch_)>("HPI_PluginDispatchFunction");
        cleanUp_ = symbol<decltype(cleanUp_)>("HPI_CleanUpPlugin");
        if (initialise) this->initialise(host);
    }
    ~LoadedPlugin() {
        cleanUp_();
        dlclose(library_);
    }
    LoadedPlugin(const LoadedPlugin&) = delete;
    LoadedPlugin& operator=(const LoadedPlugin&) = delete;

    void initialise(PIServiceTable& host) {
        symbol<void (*)(PIServiceTable*, void*)>("HPI_InitializeFunctionMap")(&host, this);
    }
    void cleanUp() { cleanUp_(); }

    /// False once the library is unmapped.
    static bool isMapped() {
        void* const library = dlopen(OE_PLUGIN, RTLD_NOW | RTLD_NOLOAD);
        if (library) dlclose(library);
        return library != nullptr;
    }

    std::int32_t dispatch(Function function, PIFunctionParams_t* record) {
        return dispatch_(static_cast<std::int32_t>(function), record, nullptr, nullptr, nullptr, nullptr);
    }
    std::int32_t dispatch(Function function) {
        PIFunctionParams_t record;
        dispatch(function, &record);
        return record.integer(PIParameterName_t::Status);
    }
    std::string text(Function function, PIParameterName_t slot) {
        PIFunctionParams_t record;
        dispatch(function, &record);
        return record.string(slot);
    }
    void event(PIApplicationEvents_t code, std::uint64_t id = 0) {
        PIFunctionParams_t record;
        record.integers[PIParameterName_t::EventCode] = static_cast<std::int32_t>(code);
        record.pointers[PIParameterName_t::EventData] = &id;
        dispatch(Function::ListenToEvents, &record);
    }
    int mouse(PIGUI::PIMouseEventType_t type, int x, int y) {
        PIGUI::PIMouseEvent event;
        event.x = x;
        event.y = y;
        PIFunctionParams_t record;
        record.integers[PIParameterName_t::EventCode] = static_cast<std::int32_t>(type);
        record.pointers[PIParameterName_t::EventData] = &event;
        dispatch(Function::HandleMouseEvent, &record);
        return record.integer(PIParameterName_t::Status);
    }

  private:
    template <typename Pointer>
    Pointer symbol(const char* name) {
        void* const address = dlsym(library_, name);
        if (!address) throw std::runtime_error(name);
        return reinterpret_cast<Pointer>(address);
    }

    void* library_;
    std::int32_t (*dispatch_)(std::int32_t, PIFunctionParams_t*, void*, void*, void*, void*) = nullptr;
    void (*cleanUp_)() = nullptr;
};
