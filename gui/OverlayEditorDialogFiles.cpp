// The part of the dialog that deals with files, with the host's overlays, and with the manual.

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <iomanip>
#include <sstream>
#include <utility>

#include "common/Files.h"
#include "common/Notify.h"
#include "common/SaveFile.h"
#include "gui/LaunchHtmlFile.h"
#include "gui/OverlayEditorDialogWidgets.h"
#include "model/OverlayFile.h"
#include "model/Utils.h"
#include "pi/PIHALVIS.h"
#include "tools/QuickDrawFiles.h"

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

/// "a, b, c", and how many more when there are many.
std::string listed(const std::vector<std::string>& names) {
    constexpr std::size_t kMost = 20;
    std::string list;
    for (std::size_t i = 0; i < std::min(names.size(), kMost); ++i) list += (i ? ", " : "") + names[i];
    if (names.size() > kMost) list += " and " + std::to_string(names.size() - kMost) + " more";
    return list;
}

std::vector<std::string> namesOf(const SkippedShapes& shapes) {
    std::vector<std::string> names;
    for (const SkippedShape& shape : shapes) names.push_back(shape.name);
    return names;
}

/// "Unsaved 2026-11-21 16-05-09", of now.
std::string rescueStem() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::ostringstream stem;
    stem << "Unsaved " << std::put_time(&local, "%Y-%m-%d %H-%M-%S");
    return std::move(stem).str();
}

/// A second, third ... name: "2", "3"; nothing for the first.
std::string numberOf(int i) {
    return i > 0 ? std::to_string(i + 1) : std::string();
}

}  // namespace

// Loading

int OverlayEditorDialog::onCmdLoadOverlay(PIObject*, void*) {
    const std::string fileName = PICommon::showFileLoadDialog(loadRequest());
    if (fileName.empty()) return 1;
    std::string text;
    if (const std::string error = UTILS::readFile(fileName, text); !error.empty()) {
        halNotify::notify(halNotify::Error) << "Could not load " << fileName << ": " << error;
        return 1;
    }
    // A file that the host displays is edited in its place, so that it is not drawn twice.
    if (loadOverlay_(text, fileName, PIHALVIS::getZELObject(fileName)))
        knownFile_ = FileVersion(fileName, text);
    return 1;
}

void OverlayEditorDialog::loadZels(const std::vector<void*>& zels) {
    for (void* const zel : zels) {
        const std::string fileName = PIHALVIS::getZELFilename(zel);
        std::ostringstream text;
        if (PIHALVIS::serializeZELToStream(zel, text) != 0) {
            halNotify::notify(halNotify::Error)
                << "Could not load " << (fileName.empty() ? "the overlay" : fileName)
                << ": the host gave no text of it";
            continue;
        }
        if (!loadOverlay_(std::move(text).str(), fileName, zel)) continue;
        // The host's text of it may differ from the file's.
        std::string inFile;
        knownFile_ =
            UTILS::readFile(fileName, inFile).empty() ? FileVersion(fileName, inFile) : FileVersion();
    }
}

int OverlayEditorDialog::onCmdLoadExisting(PIObject*, void*) {
    const CallbackPause pause;
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

bool OverlayEditorDialog::loadOverlay_(const std::string& text, const std::string& fileName, void* zel) {
    const CallbackPause pause;
    unsigned long platform = zel ? PIHALVIS::getZELHost(zel) : 0;
    halCore::Vec3 reference = findDefaultRefLla_(platform);
    auto converter = std::make_unique<PointConverter>();
    converter->setReferenceLla(reference, 0);
    LoadResult loaded = loadOverlayText(text, fileName, *preferences_, converter.get(), 0);
    if (!loaded.error.empty()) {
        if (!loaded.logged)
            halNotify::notify(halNotify::Error) << "Could not load " << fileName << ": " << loaded.error;
        return false;
    }
    if (!loaded.leftOut.empty())
        halNotify::notify(halNotify::Warning)
            << fileName
            << " holds what the editor cannot keep and would not save: " << listed(loaded.leftOut);

    if (!rescueUnsaved_()) return false;
    giveUpShapes_();
    // The reference platform goes, also when it is the one that the host has the overlay on.
    if (platform == referencePlatform_) platform = 0;
    cleanupPriorZEL_();
    // A reference in the file counts for more than a platform, in the host as here.
    const bool fixed = loaded.offsets && (loaded.offsets->reference || platform == 0);
    if (fixed) {
        if (loaded.offsets->reference)
            reference = *loaded.offsets->reference;
        else
            warnOfAssumedReference_(fileName, reference);
        platform = createRelativeReferencePlatform_(reference, {});
        if (platform == 0)
            halNotify::notify(halNotify::Warning) << "The host makes no reference platform: the offsets of "
                                                  << fileName << " become absolute positions";
    }
    // Without a reference in the file its absolute positions would be lost beside offsets from nothing.
    overlay_->setReferenceWritten(fixed && (loaded.offsets->reference || loaded.offsets->mixed));
    pointConverter_ = std::move(converter);
    pointConverter_->setReferenceLla(reference, platform);
    overlay_->setAttachedPlatformId(platform, platform ? pointConverter_.get() : nullptr, false);
    widgets_->attach.setAttachPlatform(platform);
    overlay_->setZelId(zel);
    if (zel && editing_) PIHALVIS::showZELFile(zel, false);
    std::vector<Shape*> shapes;
    for (auto& shape : loaded.shapes) shapes.push_back(shape.release());
    setCurrentShapes(shapes);
    // On a platform of the scenario, saving makes offsets of what the file has as absolute positions.
    const bool absolute = platform != 0 && !fixed && (!loaded.offsets || loaded.offsets->mixed);
    if (absolute)
        halNotify::notify(halNotify::Warning)
            << fileName << " has absolute positions, and the host has it on " << Utils::platformName(platform)
            << ": saved, they are offsets from there, unless the overlay is detached first";
    knownFile_ = FileVersion();
    setKept_(overlayText(*overlay_), absolute ? 0 : overlay_->attachedPlatformId());
    setFileName_(fileName);
    return true;
}

void OverlayEditorDialog::cleanupPriorZEL_() {
    setCurrentShape_(nullptr);
    overlay_->setAttachedPlatformId(0, nullptr, false);
    updateAttachControls_();
    widgets_->attach.hideDialog();
    widgets_->attach.reset();
    if (void* const zel = overlay_->zelId()) {
        overlay_->setZelId(nullptr);
        PIHALVIS::showZELFile(zel, true);
    }
    removeReferencePlatform_();
    fromNowhere_.reset();
    overlay_->setReferenceWritten(false);
    pointConverter_->setReferenceLla(halCore::Vec3(), 0);
}

void OverlayEditorDialog::setFileName_(const std::string& fileName) {
    widgets_->file.setValue(fileName);
    widgets_->save.setEnabled(!fileName.empty());
}

// Saving

int OverlayEditorDialog::onCmdSave(PIObject*, void*) {
    const std::string fileName = widgets_->file.getValueText();
    if (!fileName.empty()) saveZel_(fileName);
    return 1;
}

int OverlayEditorDialog::onCmdSaveAs(PIObject*, void*) {
    const std::string fileName = PICommon::showFileSaveDialog(saveRequest());
    if (!fileName.empty()) saveZel_(fileName);
    return 1;
}

bool OverlayEditorDialog::keepOldFile_(const std::string& fileName) const {
    std::string old;
    // What cannot be read is no overlay file to keep; saving tells whether it can be replaced.
    if (!UTILS::readFile(fileName, old).empty() || old.empty()) return true;
    if (savedFile_.is(fileName, old)) return true;
    // Offsets are no loss, whatever they count from.
    PointConverter anywhere;
    const LoadResult read = loadOverlayText(old, fileName, *preferences_, &anywhere, 0);
    const bool changed = knownFile_.isOf(fileName) && !knownFile_.is(fileName, old);
    const bool lossy = !read.error.empty() || losesAnything(read.losses);
    if (!changed && !lossy) return true;

    const char* const why =
        changed ? "somebody else has written it meanwhile" : "it holds what the editor cannot keep";
    std::string copy = fileName + "~";
    std::string kept;
    if (!UTILS::readFile(copy, kept).empty() || kept != old) {
        const auto name = [&](int i) { return fileName + "~" + numberOf(i); };
        if (const std::string error = UTILS::saveCopy(fileName, name, old, copy); !error.empty()) {
            halNotify::notify(halNotify::Error)
                << "Could not save " << fileName << ": " << why << ", and the copy " << copy
                << " could not be written: " << error;
            return false;
        }
    }
    halNotify::notify(halNotify::Warning) << "The old " << fileName << " is kept as " << copy << ": " << why;
    if (!lossy) return true;
    std::vector<std::string> lost;
    for (const auto& loss : read.losses)
        if (loss.severity != halNotify::Notice)
            lost.push_back("line " + std::to_string(loss.line) + ": " + loss.text);
    halNotify::notify(halNotify::Warning)
        << "Not in the new " << fileName << ": " << (lost.empty() ? "the old text" : listed(lost));
    return true;
}

bool OverlayEditorDialog::writeRescue_(const std::string& text, bool atEnd) const {
    std::vector<std::string> directories{makeQuickShapeDirectory()};
    if (atEnd) directories.push_back(UTILS::temporaryDirectory());
    const std::string stem = rescueStem();
    for (const std::string& directory : directories) {
        const auto name = [&](int i) {
            return directory + "/" + stem + (i > 0 ? " " : "") + numberOf(i) + ".zel";
        };
        std::string path;
        const std::string error = UTILS::saveNewFile(name, text, path);
        if (error.empty()) {
            halNotify::notify(halNotify::Warning) << "The unsaved shapes are kept in " << path;
            return true;
        }
        const bool last = directory == directories.back();
        halNotify::notify(halNotify::Error)
            << "The unsaved shapes could not be written to " << path << ": " << error
            << (!last   ? ""
                : atEnd ? "; they are lost"
                        : "; they stay in the editor");
    }
    return false;
}

bool OverlayEditorDialog::rescueUnsaved_(bool atEnd) const {
    SkippedShapes skipped;
    const std::string text = overlayText(*overlay_, &skipped);
    if (!text.empty() && !isKept_(text) && !writeRescue_(text, atEnd)) return false;
    // No file can hold half a shape.
    std::erase_if(skipped, [](const SkippedShape& shape) { return !shape.begun; });
    if (!skipped.empty())
        halNotify::notify(halNotify::Warning) << "Not complete, and given up: " << listed(namesOf(skipped));
    return true;
}

bool OverlayEditorDialog::isKept_(const std::string& text) const {
    if (text != keptText_) return false;
    return text.empty() || knownFile_.path().empty() || UTILS::fileIsFile(knownFile_.path());
}

void OverlayEditorDialog::setKept_(std::string text, unsigned long platform) {
    keptText_ = std::move(text);
    keptPlatform_ = platform;
    markedRevision_.reset();
    updateSavedMark_();
}

void OverlayEditorDialog::updateSavedMark_() {
    if (markedRevision_ == overlay_->revision()) return;
    markedRevision_ = overlay_->revision();
    SkippedShapes skipped;
    const bool kept = isKept_(overlayText(*overlay_, &skipped)) &&
                      (keptText_.empty() || overlay_->attachedPlatformId() == keptPlatform_) &&
                      std::ranges::none_of(skipped, &SkippedShape::begun);
    widgets_->changes.updateValue(kept ? "None" : "Not saved");
}

bool OverlayEditorDialog::saveZel_(const std::string& fileName) {
    const CallbackPause pause;
    // Nothing to write must not even cost an older copy.
    const std::string text = overlayText(*overlay_);
    if (!text.empty() && !keepOldFile_(fileName)) return false;
    PIGUI::PIRegistry::setValue(kSaveDirectoryKey, UTILS::directoryOf(fileName));
    const SaveResult saved = saveOverlayFile(*overlay_, fileName);
    if (!saved.error.empty()) {
        halNotify::notify(halNotify::Error) << "Could not save " << fileName << ": " << saved.error;
        return false;
    }
    savedFile_ = knownFile_ = FileVersion(fileName, text);
    fromNowhere_.reset();
    setKept_(text, overlay_->attachedPlatformId());
    if (!saved.skipped.empty())
        halNotify::notify(halNotify::Warning)
            << "Not complete, and not in " << fileName << ": " << listed(namesOf(saved.skipped));
    // Observers run inside the calls that unload and load: the overlay may not name what is gone.
    void* const edited = overlay_->zelId();
    void* const loaded = PIHALVIS::getZELObject(fileName);
    overlay_->setZelId(nullptr);
    if (loaded) PIHALVIS::unloadZELFile(loaded);
    if (edited && edited != loaded) PIHALVIS::showZELFile(edited, true);

    // While it is edited the editor's shapes are drawn in its place.
    void* const zel = PIHALVIS::loadZELFile(fileName, overlay_->attachedPlatformId(), editing_ ? 0 : 1);
    overlay_->setZelId(zel);
    setFileName_(fileName);
    if (!zel) {
        halNotify::notify(halNotify::Error) << fileName << " is saved, but the host could not load it";
        return true;
    }
    if (service_) service_->executeFunctions(zel);
    return true;
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
