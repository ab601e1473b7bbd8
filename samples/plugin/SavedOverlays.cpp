// A plug-in that works together with OverlayEditor: it says in the host's log which overlay files the editor
// saves. It needs the contract's headers alone and links nothing. README.md in this folder walks through it.
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "pi/HostContract.h"
#include "pi/OverlayEditorInterface.h"
#include "pi/PluginVersions.h"

namespace {

using Editor = PluginClient::Interfaces::OverlayEditorInterface;
using Slot = PIParameterName_t;

PIServiceTable* services = nullptr;
void* instance = nullptr;
/// Where the plug-in stands in its life. Once it is closed nothing may be done but to say so.
enum class Stage { New, Started, Closed } stage = Stage::New;
/// Under which the editor knows our function.
std::uint64_t registered = 0;
/// Lives as long as the editor keeps our function. Another editor, which may have been started between two
/// looks, does not have it, and our id is not ours there.
std::weak_ptr<const char> kept;

/// No exception crosses the boundary; a service that throws all the same has refused.
PIServiceResult call(PIServerFunctions_t service, PI_DATA_CATCHALL& record) try {
    return services ? services->handle(instance, service, &record) : 0;
} catch (...) {
    return 0;
}

/// The editor's interface, null while no editor is started. Asked for anew each time: the editor may be
/// closed before this plug-in, and its interface goes with it.
Editor* findEditor() {
    PI_DATA_CATCHALL record;
    record.integers = {static_cast<std::int64_t>(PISelector::Service::Find)};
    record.strings = {PluginClient::Interfaces::OVERLAYEDITOR_SERVICE_NAME};
    if (!call(PIServerFunctions_t::Service, record) || record.pointers.empty()) return nullptr;
    return static_cast<Editor*>(record.pointers.back());
}

std::string fileName(void* overlay) {
    PI_DATA_CATCHALL record;
    record.integers = {static_cast<std::int64_t>(PISelector::OverlayFiles::FileName)};
    record.pointers = {overlay};
    call(PIServerFunctions_t::OverlayFiles, record);
    return record.strings.empty() ? "an overlay" : record.strings.back();
}

void say(const std::string& text) {
    constexpr std::int64_t kNotice = 4;
    PI_DATA_CATCHALL record;
    record.integers = {static_cast<std::int64_t>(PISelector::Notify::Message), kNotice};
    record.strings = {"SavedOverlays", text};
    call(PIServerFunctions_t::Notify, record);
}

void overlaySaved(const std::vector<void*>& overlays) {
    for (void* const overlay : overlays) say("saved: " + fileName(overlay));
}

/// The plug-ins may be started in any order, and the editor may be closed and started again.
void keepRegistered() {
    Editor* const editor = findEditor();
    if (!editor || !kept.expired()) return;
    auto token = std::make_shared<const char>();
    kept = token;
    registered = editor->registerNewZelFunction(
        [token = std::move(token)](const std::vector<void*>& overlays) { overlaySaved(overlays); });
}

/// The editor must not call code that is no longer there. Also what a host forgets to close is closed.
void close() {
    if (std::exchange(stage, Stage::Closed) != Stage::Started) return;
    Editor* const editor = findEditor();
    if (editor && !kept.expired()) editor->removeNewZelFunction(registered);
}

/// Success or failure, of the events that have one.
void setStatus(PIFunctionParams_t* record, std::int32_t status) {
    if (record) record->integers[Slot::Status] = status;
}

}  // namespace

HPI_EXPORT void HPI_InitializeFunctionMap(PIServiceTable* table, void* handle) {
    close();  // an instance that lives, through the table that it has
    services = table;
    instance = handle;
    stage = Stage::New;
}
HPI_EXPORT std::int32_t HPI_PluginDispatchFunction(std::int32_t number, PIFunctionParams_t* record, void*,
                                                   void*, void*, void*) {
    const std::int32_t status = stage == Stage::Closed ? kStatusClosed : 0;
    switch (static_cast<PIClientFunctions_t>(number)) {
        case PIClientFunctions_t::Name:
            if (record && stage != Stage::Closed) record->strings[Slot::NameText] = "SavedOverlays";
            break;
        case PIClientFunctions_t::Description:
            if (record && stage != Stage::Closed)
                record->strings[Slot::InfoText] = "Says which overlay files the editor saves.";
            break;
        case PIClientFunctions_t::StartUp:
            if (stage == Stage::New) stage = Stage::Started;
            if (stage == Stage::Started) keepRegistered();
            setStatus(record, status);
            break;
        case PIClientFunctions_t::PreDrawOnRefresh:
            if (stage == Stage::Started) keepRegistered();
            break;
        case PIClientFunctions_t::Close:
            close();
            setStatus(record, status);
            break;
        case PIClientFunctions_t::Callback:
        case PIClientFunctions_t::ConfigureCommandLine:
            setStatus(record, status);
            break;
        default:
            break;
    }
    return 0;
}
HPI_EXPORT void HPI_CleanUpPlugin() {
    close();
    services = nullptr;
}
