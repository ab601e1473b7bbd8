// HostProbe.so: a plug-in that holds its host against the contract.
#include <memory>
#include <utility>

#include "kit/probe/Window.h"
#include "pi/PluginVersions.h"

namespace {

using Event = PIClientFunctions_t;
using Slot = PIParameterName_t;

enum class Stage { New, Started, Closed } stage = Stage::New;
std::unique_ptr<probe::Window> window;

void close() {
    if (std::exchange(stage, Stage::Closed) == Stage::Started) window.reset();
}

void takeEvent(const PIFunctionParams_t& record) {
    const auto code = static_cast<PIApplicationEvents_t>(record.integer(Slot::EventCode));
    const auto* const id = static_cast<const std::uint64_t*>(record.pointer(Slot::EventData));
    if (!id) return;
    if (code == PIApplicationEvents_t::EntityRemoved) {
        probe::seen.removed.push_back(*id);
        if (probe::seen.onRemoved) probe::seen.onRemoved();
    }
    if (code != PIApplicationEvents_t::PlatformAdded) return;
    probe::seen.added.push_back(*id);
    if (probe::seen.onAdded) probe::seen.onAdded();
}

void takeMouse(PIFunctionParams_t& record) {
    const auto* const event = static_cast<const PIGUI::PIMouseEvent*>(record.pointer(Slot::EventData));
    if (event && window)
        window->mouse(static_cast<PIGUI::PIMouseEventType_t>(record.integer(Slot::EventCode)), *event);
    record.integers[Slot::Status] = 0;
}

void dispatch(Event event, PIFunctionParams_t& record) {
    const auto setStatus = [&] {
        record.integers[Slot::Status] = stage == Stage::Closed ? kStatusClosed : 0;
    };
    switch (event) {
        case Event::StartUp:
            setStatus();
            if (std::exchange(stage, stage == Stage::New ? Stage::Started : stage) == Stage::New)
                window = std::make_unique<probe::Window>();
            break;
        case Event::Close:
            setStatus();
            close();
            break;
        case Event::Callback:
        case Event::ConfigureCommandLine:
            setStatus();
            break;
        default:
            break;
    }
    if (stage == Stage::Closed) return;
    if (event == Event::Name) record.strings[Slot::NameText] = "HostProbe";
    if (event == Event::Description) record.strings[Slot::InfoText] = "Holds its host against the contract.";
    if (event == Event::ListenToEvents) takeEvent(record);
    if (event == Event::HandleMouseEvent) takeMouse(record);
    if (event == Event::PreDrawOnRefresh && window)
        window->frame(record.integer(Slot::Width), record.integer(Slot::Height));
}

}  // namespace

HPI_EXPORT void HPI_InitializeFunctionMap(PIServiceTable* table, void* handle) {
    probe::isHostsThread(0);  // the first one
    close();
    probe::services = table;
    probe::instance = handle;
    stage = Stage::New;
}
HPI_EXPORT std::int32_t HPI_PluginDispatchFunction(std::int32_t number, PIFunctionParams_t* record, void*,
                                                   void*, void*, void*) {
    if (!probe::isHostsThread(number)) return 0;
    PIFunctionParams_t none;
    dispatch(static_cast<Event>(number), record ? *record : none);
    return 0;
}
HPI_EXPORT void HPI_CleanUpPlugin() {
    close();
    probe::freeCallbacks();
    probe::services = nullptr;
}
