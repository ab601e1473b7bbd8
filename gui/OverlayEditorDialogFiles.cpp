#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "common/Files.h"
#include "common/Notify.h"
#include "gui/FileRequest.h"
#include "gui/LaunchHtmlFile.h"
#include "gui/OverlayEditorDialogWidgets.h"

namespace OverlayEditor {

namespace {

/// The setting with the file that was saved last.
constexpr const char* kLastSaved = "LastOverlayEditorSaveFile";

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

}  // namespace

// Saving

int OverlayEditorDialog::onCmdSave(PIObject*, void*) {
    if (!document_.fileName().empty()) saveZel_(document_.fileName());
    return 1;
}

int OverlayEditorDialog::onCmdSaveAs(PIObject*, void*) {
    const std::string fileName =
        PICommon::showFileSaveDialog(fileRequest("Save Overlay File", {"ZEL Files\t*.zel"}, kLastSaved));
    if (fileName.empty()) return 1;
    // Hosts differ in whether they have appended it.
    afterAsking_([this, fileName = withSuffix(fileName)] { saveZel_(fileName); });
    return 1;
}

void OverlayEditorDialog::saveZel_(const std::string& fileName) {
    if (!document_.save(fileName)) return;
    // What was read of it is neither what is in it now, nor what the host shows of it.
    if (loading_ && UTILS::isSameFile(loading_->reading.fileName, fileName))
        cancelLoading_("what is edited was saved in it");
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
