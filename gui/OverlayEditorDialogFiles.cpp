#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "common/Files.h"
#include "common/Notify.h"
#include "gui/LaunchHtmlFile.h"
#include "gui/OtherFormats.h"
#include "gui/OverlayEditorDialogWidgets.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

namespace {

/// Settings with the files that were loaded and saved last.
constexpr const char* kLastLoaded = "LastOverlayEditorLoadFile";
constexpr const char* kLastSaved = "LastOverlayEditorSaveFile";

/// The host begins where it remembers; one that remembers nothing, where the file was.
PICommon::FileDialogRequest request(std::string title, std::vector<std::string> filters, const char* last) {
    return {.title = std::move(title),
            .filters = std::move(filters),
            .settingsGroup = "SETTINGS",
            .settingsKey = last,
            .startDirectory = UTILS::directoryOf(PIGUI::PIRegistry::getValue(last))};
}

/// A name that was chosen to be saved under, with ".zel" unless it has a suffix: "v1.2" and "trail." have
/// none.
std::string withSuffix(const std::string& fileName) {
    // The host has asked whether this very file is to be replaced.
    if (UTILS::fileIsFile(fileName)) return fileName;
    const std::string suffix = std::filesystem::path(fileName).extension().native();
    if (suffix == ".") return fileName + "zel";
    const bool is = suffix.size() > 1 && std::isalpha(static_cast<unsigned char>(suffix[1]));
    return is ? fileName : fileName + ".zel";
}

/// A file of another program, as a new overlay.
Document::Reading readOtherFormat(const Document& document, const std::string& fileName) {
    std::string text;
    std::vector<std::string> messages;
    const std::string error = UTILS::readOtherFormat(fileName, text, messages);
    for (const std::string& message : messages) halNotify::notify(halNotify::Warning) << message;
    Document::Reading reading;
    if (error.empty()) {
        reading = document.read(std::move(text), fileName);
        // It is in no file of the editor's yet.
        reading.fileName.clear();
    } else {
        halNotify::notify(halNotify::Error)
            << "Not loaded: " << fileName << ": " << error << ". What is edited stays";
        reading.loaded.error = error;
    }
    return reading;
}

}  // namespace

// Loading

void OverlayEditorDialog::afterAsking_(std::function<void()> work) {
    EntryScope::wait({this}, [this, work = std::move(work)] {
        document_.history().begin(History::Gesture::Command);
        work();
    });
}

int OverlayEditorDialog::onCmdLoadOverlay(PIObject*, void*) {
    const std::string fileName = PICommon::showFileLoadDialog(
        request("Load Overlay File",
                {"Overlay Files\t*.zel *.ll *.lla *.xy *.xyz *.rxy *.rxyz", "ZEL Files\t*.zel",
                 std::string("Files of Other Programs\t") + UTILS::kOtherFormats, "All Files\t*"},
                kLastLoaded));
    if (!fileName.empty())
        afterAsking_([this, fileName] {
            const bool loaded =
                loadOverlay_(UTILS::isOtherFormat(fileName) ? readOtherFormat(document_, fileName)
                                                            : document_.readFile(fileName),
                             true);
            if (loaded) PIGUI::PIRegistry::setValue(kLastLoaded, fileName);
        });
    return 1;
}

void OverlayEditorDialog::loadZels(const std::vector<void*>& zels) {
    toLoad_ = zels;
    std::vector<std::string> names;
    // While the host serves the first ones it may unload others.
    while (!toLoad_.empty()) {
        void* const zel = toLoad_.front();
        toLoad_.erase(toLoad_.begin());
        names.push_back(PIHALVIS::getZELFilename(zel));
        // Sent once more while it is edited.
        if (zel == overlay_->zelId() && !document_.isSaved())
            halNotify::notify(halNotify::Warning)
                << (names.back().empty() ? "The overlay" : names.back())
                << " is edited already, and has changes that are not saved: nothing is loaded. \"New\" "
                   "gives them up";
        else
            loadOverlay_(document_.readOverlay(zel));
    }
    if (names.size() < 2) return;
    std::erase(names, document_.fileName());
    std::string others;
    for (const std::string& name : names) others.append(others.empty() ? "" : ", ").append(name);
    halNotify::notify(halNotify::Warning)
        << "One overlay is edited at a time: " << document_.fileName() << ", and not " << others;
}

int OverlayEditorDialog::onCmdLoadExisting(PIObject*, void*) {
    if (!existingZels_)
        existingZels_ = std::make_unique<SelectExistingZELDialog>(
            callbacks_.make(&OverlayEditorDialog::onCmdExistingZelSelected));
    existingZels_->show();
    return 1;
}

int OverlayEditorDialog::onCmdExistingZelSelected(PIObject*, void*) {
    std::string fileName;
    unsigned long handle = 0;
    if (!existingZels_ || existingZels_->getSelection(fileName, handle) != 0) {
        halNotify::notify(halNotify::Warning) << "Not loaded: no overlay is selected";
        return 1;
    }
    loadZels({reinterpret_cast<void*>(handle)});
    existingZels_->hide();
    return 1;
}

bool OverlayEditorDialog::loadOverlay_(Document::Reading reading, bool back) {
    if (!reading.loaded.error.empty()) return false;
    // What goes back to its own file can be had again.
    const bool goesBack = back && !reading.fileName.empty() && reading.fileName == document_.fileName() &&
                          document_.history().holds();
    if (!goesBack && !rescued_()) return false;
    if (goesBack && !document_.isSaved())
        halNotify::notify(halNotify::Warning)
            << reading.fileName << " is loaded again; Undo brings back what was not saved";
    giveUpShapes_();
    document_.take(std::move(reading));
    fillList_();
    showDocument_();
    return true;
}

// Saving

int OverlayEditorDialog::onCmdSave(PIObject*, void*) {
    if (!document_.fileName().empty()) saveZel_(document_.fileName());
    return 1;
}

int OverlayEditorDialog::onCmdSaveAs(PIObject*, void*) {
    const std::string fileName =
        PICommon::showFileSaveDialog(request("Save Overlay File", {"ZEL Files\t*.zel"}, kLastSaved));
    if (fileName.empty()) return 1;
    // Hosts differ in whether they have appended it.
    afterAsking_([this, fileName = withSuffix(fileName)] { saveZel_(fileName); });
    return 1;
}

void OverlayEditorDialog::saveZel_(const std::string& fileName) {
    if (!document_.save(fileName)) return;
    PIGUI::PIRegistry::setValue(kLastSaved, fileName);
    for (const std::string& message : RefusedText::messages())
        halNotify::notify(halNotify::Warning) << "Saved, but not this: " << message;
    showDocument_();
    if (service_ && overlay_->zelId()) service_->executeFunctions(overlay_->zelId());
}

void OverlayEditorDialog::updateSavedMark_() {
    widgets_->changes.updateValue(document_.changes());
}

// The manual

int OverlayEditorDialog::onCmdHelp(PIObject*, void*) {
    const char* const directory = std::getenv("HALVIS_DIR");
    const std::string path =
        std::string(directory ? directory : "") + "/doc/HALVIS/Overlay_Editor_Plugin.pdf";
    if (!directory || !UTILS::fileIsFile(path)) {
        halNotify::notify(halNotify::Error) << "Could not find Overlay Editor Documentation.\n";
        return 1;
    }
    const std::string address = "file://" + path;
    if (const std::string error = UTILS::LaunchHtmlFile(address); !error.empty())
        halNotify::notify(halNotify::Error)
            << "Error Loading Overlay Editor Documentation at " << address << " : " << error;
    return 1;
}

}  // namespace OverlayEditor
