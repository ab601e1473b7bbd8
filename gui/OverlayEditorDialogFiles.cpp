#include <algorithm>
#include <cstdlib>

#include "common/Files.h"
#include "common/Notify.h"
#include "gui/LaunchHtmlFile.h"
#include "gui/OverlayEditorDialogWidgets.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

namespace {

PICommon::FileDialogRequest loadRequest() {
    return {.title = "Load Overlay File",
            .filters = {"Overlay Files\t*.zel *.ll *.lla *.xy *.xyz *.rxy *.rxyz", "ZEL Files\t*.zel",
                        "All Files\t*"},
            .settingsGroup = "SETTINGS",
            .settingsKey = "LastOverlayEditorLoadFile",
            .startDirectory = {}};
}

PICommon::FileDialogRequest saveRequest() {
    return {.title = "Save Overlay File",
            .filters = {"ZEL Files\t*.zel"},
            .settingsGroup = "SETTINGS",
            .settingsKey = "LastOverlayEditorSaveFile",
            .startDirectory = {}};
}

}  // namespace

// Loading

int OverlayEditorDialog::onCmdLoadOverlay(PIObject*, void*) {
    const std::string fileName = PICommon::showFileLoadDialog(loadRequest());
    if (!fileName.empty()) loadOverlay_(document_.readFile(fileName));
    return 1;
}

void OverlayEditorDialog::loadZels(const std::vector<void*>& zels) {
    for (void* const zel : zels) loadOverlay_(document_.readOverlay(zel));
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
        halNotify::notify(halNotify::Warning) << "No overlay is selected";
        return 1;
    }
    loadZels({reinterpret_cast<void*>(handle)});
    existingZels_->hide();
    return 1;
}

void OverlayEditorDialog::loadOverlay_(Document::Reading reading) {
    if (!reading.loaded.error.empty() || !document_.rescue()) return;
    giveUpShapes_();
    document_.take(std::move(reading));
    fillList_();
    showDocument_();
}

// Saving

int OverlayEditorDialog::onCmdSave(PIObject*, void*) {
    if (!document_.fileName().empty()) saveZel_(document_.fileName());
    return 1;
}

int OverlayEditorDialog::onCmdSaveAs(PIObject*, void*) {
    const std::string fileName = PICommon::showFileSaveDialog(saveRequest());
    if (!fileName.empty()) saveZel_(fileName);
    return 1;
}

void OverlayEditorDialog::saveZel_(const std::string& fileName) {
    if (!document_.save(fileName)) return;
    showDocument_();
    if (service_ && overlay_->zelId()) service_->executeFunctions(overlay_->zelId());
}

void OverlayEditorDialog::updateSavedMark_() {
    widgets_->changes.updateValue(document_.isSaved() ? "None" : "Not saved");
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
