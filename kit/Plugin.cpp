#include "kit/Plugin.h"

#include <exception>
#include <fstream>
#include <stdexcept>
#include <utility>

#include <dlfcn.h>

namespace kit {

template <typename Function>
void Plugin::find_(Function*& function, const char* name) {
    void* const address = dlsym(library_, name);
    if (!address) throw std::runtime_error(std::string("the library does not export ") + name);
    function = reinterpret_cast<Function*>(address);
}

Plugin::Plugin(const std::string& path, Findings& findings, Situation& situation)
    : path_(path), findings_(findings), situation_(situation) {
    situation_.setEntry("dlopen");
    library_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library_) throw std::runtime_error(std::string("the library cannot be loaded: ") + dlerror());
    try {
        find_(versionInfo, "HPI_VersionInfo");
        find_(versionInfoEx, "HPI_VersionInfoEx");
        find_(minimumVersion, "HPI_MinimumVersion");
        find_(compilerVersion, "HPI_GetCompilerVersion");
        find_(bitWidth, "HPI_GetBitWidth");
        find_(isDebugMode, "HPI_IsDebugMode");
        find_(initialise_, "HPI_InitializeFunctionMap");
        find_(dispatch_, "HPI_PluginDispatchFunction");
        find_(cleanUp_, "HPI_CleanUpPlugin");
    } catch (...) {
        dlclose(library_);
        throw;
    }
}

Plugin::~Plugin() {
    unload();
}

void Plugin::enter(const std::string& name, const std::function<void()>& call) {
    if (depth_++ == 0) situation_.setEntry(name);
    try {
        call();
    } catch (const std::exception& error) {
        findings_.fault("an exception comes out of " + name + ": " + error.what());
    } catch (...) {
        findings_.fault("an exception comes out of " + name);
    }
    if (--depth_ != 0) return;
    if (std::exchange(closesAtEnd_, false)) closed_();
    // From inside a service: the table was forgotten at once, so nothing could be taken down through it.
    if (std::exchange(cleansAtEnd_, false)) cleanedUp_(false);
    situation_.setEntry({});
}

void Plugin::initialise(Host& host) {
    const bool nested = depth_ != 0;
    // An instance that lives is closed first, through the table that it has.
    enter("HPI_InitializeFunctionMap", [&] { initialise_(&host, host.instance()); });
    if (nested) return;
    if (isStarted()) host_->judgeLeftovers("after a second HPI_InitializeFunctionMap");
    if (host_) host_->phase = Phase::CleanedUp;
    host_ = &host;
    host.phase = Phase::Initialised;
    host.enter = [this](const std::string& name, const std::function<void()>& call) { enter(name, call); };
    host.tell = [this](PIApplicationEvents_t code, std::uint64_t id) { event(code, id); };
}

void Plugin::dispatch(std::int32_t number, PIFunctionParams_t* record) {
    const auto event = static_cast<Event>(number);
    std::int32_t result = 0;
    const Phase before = host_ ? host_->phase : Phase::Loaded;
    if (event == Event::StartUp && before == Phase::Initialised) host_->phase = Phase::Started;
    const bool closes = event == Event::Close && (before == Phase::Started || before == Phase::Initialised);
    if (closes && depth_ != 0) closesAtEnd_ = true;
    enter("event " + std::to_string(number),
          [&] { result = dispatch_(number, record, nullptr, nullptr, nullptr, nullptr); });
    if (result != 0)
        findings_.fault("the dispatch of event " + std::to_string(number) + " returns " +
                        std::to_string(result) + ", not 0");
    if (closes && depth_ == 0) closed_();
}

void Plugin::closed_() {
    if (!host_) return;
    if (host_->phase == Phase::Started || host_->phase == Phase::Initialised) host_->phase = Phase::Closed;
    host_->judgeLeftovers("after Close");
    host_->dropLeftovers();
}

std::int32_t Plugin::dispatch(Event event) {
    PIFunctionParams_t record;
    dispatch(static_cast<std::int32_t>(event), &record);
    return record.integer(PIParameterName_t::Status);
}

bool Plugin::start() {
    const bool wasStarted = isStarted();
    PIFunctionParams_t record;
    record.pointers[PIParameterName_t::CommandLineArguments] =
        static_cast<PIApp::CommandLineArgumentsProvider*>(&commandLine_);
    commandLine_.isDue = true;
    dispatch(static_cast<std::int32_t>(Event::StartUp), &record);
    commandLine_.isDue = false;
    if (record.integer(PIParameterName_t::Status) == 0) return isStarted();
    if (!host_ || wasStarted || host_->phase != Phase::Started) return false;
    host_->phase = Phase::Initialised;
    host_->judgeLeftovers("after a StartUp that has failed");
    host_->dropLeftovers();
    return false;
}

void Plugin::close(bool withRecord) {
    PIFunctionParams_t record;
    dispatch(static_cast<std::int32_t>(Event::Close), withRecord ? &record : nullptr);
}

void Plugin::cleanUp() {
    if (depth_ != 0) cleansAtEnd_ = true;
    enter("HPI_CleanUpPlugin", [&] { cleanUp_(); });
    if (depth_ == 0) cleanedUp_(true);
}

void Plugin::cleanedUp_(bool judges) {
    if (!host_) return;
    if (judges && isStarted()) host_->judgeLeftovers("after a clean-up without a Close");
    host_->phase = Phase::CleanedUp;
    host_->dropLeftovers();
    host_->tell = {};
    host_->enter = {};
    host_ = nullptr;
}

void Plugin::unload() {
    if (!library_) return;
    if (host_ && (isStarted() || host_->phase == Phase::Initialised)) close();
    if (host_) cleanUp();
    situation_.setEntry("dlclose");
    dlclose(std::exchange(library_, nullptr));
    situation_.setEntry({});
    if (isMapped(path_))
        findings_.fault(
            "the library is still mapped after dlclose (by -fgnu-unique, or by thread_local data?)");
}

bool Plugin::isMapped(const std::string& path) {
    if (void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD)) {
        dlclose(library);
        return true;
    }
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.ends_with(" " + path)) return true;
    return false;
}

void Plugin::event(PIApplicationEvents_t code, std::uint64_t id) {
    PIFunctionParams_t record;
    record.integers[PIParameterName_t::EventCode] = static_cast<std::int32_t>(code);
    const bool aboutEntity =
        code == PIApplicationEvents_t::EntityRemoved || code == PIApplicationEvents_t::PlatformAdded;
    record.pointers[PIParameterName_t::EventData] = aboutEntity ? &id : nullptr;
    dispatch(static_cast<std::int32_t>(Event::ListenToEvents), &record);
}

bool Plugin::mouse(Mouse type, int x, int y, std::uint32_t modifiers, int wheel) {
    PIGUI::PIMouseEvent event{x, y, modifiers, wheel};
    PIFunctionParams_t record;
    record.integers[PIParameterName_t::EventCode] = static_cast<std::int32_t>(type);
    record.pointers[PIParameterName_t::EventData] = &event;
    const bool nested = depth_ != 0;
    dispatch(static_cast<std::int32_t>(Event::HandleMouseEvent), &record);
    const bool consumed = record.integer(PIParameterName_t::Status) != 0;
    if (consumed && nested)
        findings_.fault("a mouse event is consumed from inside another entry, which it would interrupt");
    // A user who clicks twice, and fast.
    if (!consumed && type == Mouse::LeftDoubleClick) return mouse(Mouse::LeftPress, x, y, modifiers);
    return consumed;
}

void Plugin::frame() {
    PIFunctionParams_t record;
    record.integers[PIParameterName_t::Width] = 800;
    record.integers[PIParameterName_t::Height] = 600;
    dispatch(static_cast<std::int32_t>(Event::PreDrawOnRefresh), &record);
}

void Plugin::call(const std::string& name, FunctorTwoParams__* callback, PIObject* sender, void* data) {
    if (callback) enter(name, [&] { callback->Call(sender, data); });
}

}  // namespace kit
