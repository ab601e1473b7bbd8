// A plug-in with a menu item, a dialog and a timeout, without a fault but for the one that the environment's
// BROKEN names: what hpi-check-plugin has to find.
#include <cfenv>
#include <chrono>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <dlfcn.h>
#include <sys/mman.h>
#include <unistd.h>

#ifdef __SSE__
#include <xmmintrin.h>
#endif

#include "pi/HostContract.h"

namespace {

using Id = PIServerFunctions_t;
using Event = PIClientFunctions_t;
using Slot = PIParameterName_t;

bool has(const char* fault) {
    const char* const broken = std::getenv("BROKEN");
    return broken && std::string(broken) == fault;
}

PIServiceTable* services = nullptr;
void* instance = nullptr;
enum class Stage { New, Started, Closed } stage = Stage::New;
void *item = nullptr, *dialog = nullptr, *timeout = nullptr;
int entries = 0;
const PIApp::CommandLineArgumentsProvider* commandLine = nullptr;

/// Takes whatever was clicked for overlays.
class Menus final : public PIHALVIS::ContextMenuCallbackV3 {
    void menuRequested(const std::string&, const PIHALVIS::ContextMenuData* data, void*) override {
        overlays = static_cast<const PIHALVIS::ZelMenuData*>(data)->overlays.size();
    }
    std::size_t overlays = 0;
} menus;

PIServiceResult handle(Id service, void* record) {
    if (has("throws")) return services->handle(instance, service, record);
    try {
        return services ? services->handle(instance, service, record) : 0;
    } catch (...) {
        return 0;
    }
}
template <typename Record, typename... Arguments>
PIServiceResult call(Id service, Arguments... arguments) {
    Record record(arguments...);
    return handle(service, &record);
}

class Functor final : public FunctorTwoParams__ {
  public:
    explicit Functor(std::function<void()> f) : function(std::move(f)) {}
    int operator()(PIObject*, void*) override {
        // One entry at a time; this one has nothing that could not be left undone.
        if (entries || (stage != Stage::Started && !has("late"))) return 1;
        ++entries;
        function();
        --entries;
        return 1;
    }
    int Call(PIObject* sender, void* data) override { return (*this)(sender, data); }
    std::function<void()> function;
};
std::vector<std::unique_ptr<Functor>> functors;
FunctorTwoParams__* callback(std::function<void()> function) {
    return functors.emplace_back(std::make_unique<Functor>(std::move(function))).get();
}

void armTimeout() {
    PI_DATA_CATCHALL record;
    record.integers = {0, 1000};
    record.pointers = {callback([] { timeout = nullptr; }), nullptr};
    handle(Id::Timeout, &record);
    if (record.pointers.size() > 2) timeout = record.pointers.back();
    if (!timeout && has("trusting")) std::abort();
}

void drop(void*& widget) {
    if (widget) call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, widget, nullptr);
    if (!has("dangling")) widget = nullptr;
}

void showDialog() {
    if (!dialog) {
        dialog = reinterpret_cast<void*>(call<PI_DATA_POINTER_AND_STRING>(
            Id::CreateDialogBox, nullptr, has("latin") ? "Kaputt f\xfcr immer" : "Broken"));
        if (!dialog) return;
        call<PI_DATA_POINTER_INT_AND_FUNCTION>(Id::CreateTextField, dialog, 0, nullptr);
    }
    handle(Id::DialogShow, dialog);
    if (has("filters")) {
        PI_DATA_CATCHALL load;
        load.integers = {0};
        load.strings = {"Load", "Broken", "File", "", "Texts (*.txt)"};
        handle(Id::FileDialog, &load);
    }
    if (has("record")) call<PI_DATA_POINTER_AND_INT>(Id::WindowShow, dialog, 1);
    if (has("thread")) std::thread([] { handle(Id::DialogShow, dialog); }).join();
    if (has("dangling")) {
        drop(dialog);
        call<PI_DATA_POINTER_AND_STRING>(Id::WindowSetString, dialog, "gone");
        dialog = nullptr;
    }
    if (!timeout) armTimeout();
}

void tellMenus(PISelector::ContextMenu selector) {
    PI_DATA_CATCHALL record;
    record.integers = {static_cast<std::int64_t>(selector)};
    record.pointers = {static_cast<PIHALVIS::ContextMenuCallbackV3*>(&menus)};
    handle(Id::ContextMenu, &record);
}

void close() {
    if (stage != Stage::Started) {
        stage = Stage::Closed;
        return;
    }
    while (has("hungry")) std::memset(new char[1 << 20], 1, 1 << 20);
    if (has("hangs")) std::this_thread::sleep_for(std::chrono::hours(1));
    PI_DATA_CATCHALL cancel;
    cancel.integers = {1};
    cancel.pointers = {timeout};
    if (timeout && !has("leaves")) handle(Id::Timeout, &cancel);
    timeout = nullptr;
    drop(dialog);
    drop(item);
    if (has("assumes")) tellMenus(PISelector::ContextMenu::Remove);
    stage = Stage::Closed;
}

void startUp() {
    if (stage != Stage::New) return;
    stage = Stage::Started;
    if (has("assumes")) tellMenus(PISelector::ContextMenu::Register);
    if (has("forgetful")) new char[200]();
    if (has("astray") && chdir("/proc") != 0) return;
    if (has("breeds") && fork() == 0) std::this_thread::sleep_for(std::chrono::hours(1));
    if (has("maps")) mmap(nullptr, 1 << 16, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (has("brings")) dlopen("libutil.so.1", RTLD_NOW);
    if (has("alarms")) alarm(3600);
    if (has("traps")) feenableexcept(FE_DIVBYZERO);
    if (has("prints")) std::cout << std::hex;
    if (has("terminates")) std::set_terminate([] { std::abort(); });
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGUSR1);
    if (has("blocks")) sigprocmask(SIG_BLOCK, &signals, nullptr);
#ifdef __SSE__
    if (has("flushes")) _mm_setcsr(_mm_getcsr() | 0x8040);
#endif
    if (has("foreign-locale")) std::setlocale(LC_ALL, "");
    item = reinterpret_cast<void*>(call<PI_DATA_POINTER_STRING_AND_FUNCTION>(
        Id::CreateMenuItem, nullptr, "Broken...", callback(showDialog)));
}

}  // namespace

#define HPI_MINIMUM_HOST (has("version") ? 13001 : 12000)
#include "pi/PluginVersions.h"

HPI_EXPORT void HPI_InitializeFunctionMap(PIServiceTable* table, void* handle) {
    if (entries) return;
    if (!has("unclosed")) close();
    services = table;
    instance = handle;
    stage = Stage::New;
    Dl_info self;
    if (has("pinned") && dladdr(&services, &self)) dlopen(self.dli_fname, RTLD_NOW | RTLD_NODELETE);
}
HPI_EXPORT std::int32_t HPI_PluginDispatchFunction(std::int32_t number, PIFunctionParams_t* record, void*,
                                                   void*, void*, void*) {
    if (number < 0 || number >= kClientFunctionCount) return has("result") ? 1 : 0;
    const auto event = static_cast<Event>(number);
    const bool closed = stage == Stage::Closed;
    const auto setStatus = [&](int status) {
        if (record) record->integers[Slot::Status] = closed ? kStatusClosed : status;
    };
    ++entries;
    const auto* const arguments = record ? record->pointer(Slot::CommandLineArguments) : nullptr;
    if (event == Event::StartUp && arguments)
        commandLine = static_cast<const PIApp::CommandLineArgumentsProvider*>(arguments);
    if (event == Event::PreDrawOnRefresh && has("nosy") && commandLine) commandLine->arguments();
    if (event == Event::StartUp) startUp();
    if (event == Event::Close) close();
    --entries;
    if (event == Event::StartUp || event == Event::Close || event == Event::Callback ||
        event == Event::ConfigureCommandLine)
        setStatus(0);
    if (event == Event::HandleMouseEvent && !closed) setStatus(has("greedy") ? 1 : 0);
    if (event == Event::Name && record && !closed)
        record->strings[Slot::NameText] = has("nameless") ? "" : "Broken";
    return 0;
}
HPI_EXPORT void HPI_CleanUpPlugin() {
    if (!has("unclosed")) close();
    functors.clear();
    services = nullptr;
}
