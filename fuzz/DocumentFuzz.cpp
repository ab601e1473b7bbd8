// Any text is loaded into the editor as a file, changed, saved, loaded and taken back, in a host that refuses
// services which the text draws: nothing that is said to be saved is another thing in the file, what was
// saved comes back as it is, and all steps taken back are the text as it was loaded.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

#include "common/Files.h"
#include "common/Notify.h"
#include "common/SaveFile.h"
#include "model/Document.h"
#include "support/FakeHost.h"
#include "support/TemporaryDirectory.h"

namespace {

using OverlayEditor::Document;
using OverlayEditor::Overlay;
using OverlayEditor::Shape;

void require(bool condition, std::string_view what, const std::string& first, const std::string& second) {
    if (condition) return;
    std::cerr << what << "\n--- first\n" << first << "--- second\n" << second;
    std::abort();
}

std::string contents(const std::string& file) {
    std::string text;
    require(UTILS::readFile(file, text).empty(), "A file is gone", file, "");
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryDirectory directory;
    static const std::string file = directory.path() + "/fuzz.zel";
    ::setenv("HOME", directory.path().c_str(), 1);
    halNotify::setNotifyHandler([](halNotify::Severity, const std::string&) {});
    const std::string text(reinterpret_cast<const char*>(data), size);
    FakeHost host;
    host.settings["AutoSaveZelDir"] = directory.path() + "/rescued";
    const std::size_t drawn = std::hash<std::string>()(text);
    const std::size_t refused = drawn % 4 == 0 ? 0 : drawn & (drawn >> 11);
    host.answer = [refused](FakeHost::Id id, void*) -> std::optional<PIServiceResult> {
        if ((refused >> (static_cast<std::size_t>(id) % 61)) % 2 == 0) return std::nullopt;
        return 0;
    };
    if (!UTILS::saveFile(file, text).empty()) return 0;

    const OverlayEditor::Preferences preferences;
    Overlay overlay;
    Document document(preferences, overlay);
    document.setEditing(true);
    document.take(document.readFile(file));
    document.history().commit();
    if (overlay.shapes().empty()) return 0;
    const std::string loaded = document.text();
    const bool several = overlay.shapes().size() > 1;
    for (int step = 0; step < 1 + several; ++step) {
        document.history().begin(OverlayEditor::History::Gesture::Command);
        if (step == 0) {
            // Another name, whatever it has.
            Shape& first = *overlay.shapes().front();
            first.setName(first.name() + " again");
        }
        if (step == 1) overlay.deleteShape(overlay.shapes().back());
        document.history().commit();
    }
    const std::string changed = document.text();
    if (document.save(file)) {
        require(contents(file) == changed, "Another text is saved than there was", changed, contents(file));
        // What is not complete is not in the file, and said to be missing there.
        require(document.isSaved() || !overlay.incomplete().empty(), "What was saved is not", changed,
                document.changes());
        Overlay other;
        Document again(preferences, other);
        again.take(again.readFile(file));
        if (!other.shapes().empty())
            require(again.text() == changed, "What was saved comes back as another", changed, again.text());
    } else {
        require(contents(file) == text, "A refused save has changed the file", text, contents(file));
    }
    for (int step = 0; step < 1 + several; ++step) document.undo();
    require(document.text() == loaded, "Taken back, it is another text", loaded, document.text());
    return 0;
}
