#include <algorithm>
#include <string>
#include <utility>

#include "common/Notify.h"
#include "gui/FileRequest.h"
#include "gui/OtherFormats.h"
#include "gui/OverlayEditorDialogWidgets.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

namespace {

/// The setting with the file that was loaded last.
constexpr const char* kLastLoaded = "LastOverlayEditorLoadFile";

/// What is small is loaded at once.
constexpr std::size_t kAtLeastAtOnce = 50'000;
/// Whoever waits longer sees how far it is.
constexpr std::chrono::seconds kUntold{1};

/// A file of another program, as a new overlay.
Document::Reading beginOtherFormat(const Document& document, UTILS::OtherFormatReading& file) {
    const std::string& fileName = file.fileName();
    std::string text;
    std::vector<std::string> messages;
    const std::string error = file.take(text, messages);
    for (const std::string& message : messages) halNotify::notify(halNotify::Warning) << message;
    Document::Reading reading;
    if (error.empty()) {
        reading = document.begin(std::move(text), fileName);
        reading.isForeign = true;
    } else {
        halNotify::notify(halNotify::Error)
            << "Not loaded: " << fileName << ": " << error << ". What is edited stays";
        reading.loaded.error = error;
    }
    return reading;
}

}  // namespace

void OverlayEditorDialog::afterAsking_(std::function<void()> work) {
    EntryScope::wait({this}, [this, work = std::move(work)] {
        document_.history().begin(History::Gesture::Command);
        work();
    });
}

int OverlayEditorDialog::onCmdLoadOverlay(PIObject*, void*) {
    const std::string fileName = PICommon::showFileLoadDialog(
        fileRequest("Load Overlay File",
                    {"Overlay Files\t*.zel *.ll *.lla *.xy *.xyz *.rxy *.rxyz", "ZEL Files\t*.zel",
                     std::string("Files of Other Programs\t") + UTILS::kOtherFormats, "All Files\t*"},
                    kLastLoaded));
    if (!fileName.empty())
        afterAsking_([this, fileName] {
            const auto then = [fileName](bool loaded) {
                if (loaded) PIGUI::PIRegistry::setValue(kLastLoaded, fileName);
            };
            if (!UTILS::isOtherFormat(fileName)) {
                load_(document_.beginFile(fileName), true, then);
                return;
            }
            Document::Reading reading;
            reading.fileName = fileName;
            load_(std::move(reading), true, then, std::make_unique<UTILS::OtherFormatReading>(fileName));
        });
    return 1;
}

void OverlayEditorDialog::loadZels(const std::vector<void*>& zels) {
    cancelLoading_("something else is loaded");
    toLoad_ = zels;
    sent_.clear();
    loadNextZel_();
}

void OverlayEditorDialog::loadNextZel_() {
    // While the host serves the first ones it may unload others.
    while (!toLoad_.empty()) {
        void* const zel = toLoad_.front();
        toLoad_.erase(toLoad_.begin());
        sent_.push_back(PIHALVIS::getZELFilename(zel));
        // Sent once more while it is edited.
        if (zel != overlay_->zelId() || document_.isSaved()) {
            load_(document_.beginOverlay(zel), false, [this](bool) { loadNextZel_(); });
            return;
        }
        halNotify::notify(halNotify::Warning)
            << (sent_.back().empty() ? "The overlay" : sent_.back())
            << " is edited already, and has changes that are not saved: nothing is loaded. \"New\" gives "
               "them up";
    }
    if (sent_.size() < 2) return;
    std::erase(sent_, document_.fileName());
    std::string others;
    for (const std::string& name : sent_) others.append(others.empty() ? "" : ", ").append(name);
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

// A load that is under way

void OverlayEditorDialog::load_(Document::Reading reading, bool back, std::function<void(bool)> then,
                                std::unique_ptr<UTILS::OtherFormatReading> conversion) {
    cancelLoading_("something else is loaded");
    loading_.emplace(Loading{.conversion = std::move(conversion),
                             .reading = std::move(reading),
                             .back = back,
                             .then = std::move(then),
                             .sender = sender_,
                             .insists = insists_,
                             .begun = std::chrono::steady_clock::now()});
    Slice slice(kAtLeastAtOnce, HostTurns::kAtOnce);
    goOnLoading_(slice);
}

void OverlayEditorDialog::goOnLoading_(Slice& slice) {
    // What the mouse draws is whole first.
    bool waits = document_.history().isPressed() || isConverting_();
    waits = waits || !document_.goOn(loading_->reading, slice);
    if (waits && document_.turns().comeBack()) {
        const double part = loading_->conversion ? 0.0 : loading_->reading.part();
        const auto percent = static_cast<int>(100.0 * part);
        if (std::chrono::steady_clock::now() - loading_->begun > kUntold)
            widgets_->messages.tellProgress("Loading " + loading_->reading.fileName + ": " +
                                            std::to_string(percent) + " %");
        return;
    }
    Loading loading = std::move(*loading_);
    loading_.reset();
    widgets_->messages.tellProgress({});
    sender_ = loading.sender;
    insists_ = loading.insists;
    const bool loaded = loadOverlay_(std::move(loading.reading), loading.back);
    if (loading.then) loading.then(loaded);
}

bool OverlayEditorDialog::isConverting_() {
    if (!loading_->conversion) return false;
    const auto most = loading_->hasWaited ? std::chrono::milliseconds(0) : HostTurns::kAtOnce;
    loading_->hasWaited = true;
    if (!loading_->conversion->wait(most) && document_.turns().comeBack()) return true;
    loading_->reading = beginOtherFormat(document_, *std::exchange(loading_->conversion, nullptr));
    return false;
}

void OverlayEditorDialog::cancelLoading_(const std::string& why) {
    if (!loading_) return;
    Loading loading = std::move(*loading_);
    loading_.reset();
    toLoad_.clear();
    widgets_->messages.tellProgress({});
    halNotify::notify(halNotify::Warning)
        << "Not loaded: " << loading.reading.fileName << ": " << why << ". What is edited stays";
    document_.drop(std::move(loading.reading));
}

int OverlayEditorDialog::onCmdCancelLoading(PIObject*, void*) {
    cancelLoading_("it was canceled");
    return 1;
}

bool OverlayEditorDialog::loadOverlay_(Document::Reading reading, bool back) {
    if (!reading.loaded.error.empty()) return false;
    // What goes back to its own file can be had again.
    const bool goesBack = back && !reading.fileName.empty() && reading.fileName == document_.fileName() &&
                          document_.history().holds();
    if (!goesBack && !rescued_()) {
        document_.drop(std::move(reading));
        return false;
    }
    if (goesBack && !document_.isSaved())
        halNotify::notify(halNotify::Warning)
            << reading.fileName << " is loaded again; Undo brings back what was not saved";
    giveUpShapes_();
    if (reading.isForeign) reading.fileName.clear();
    const bool taken = document_.take(std::move(reading));
    fillList_();
    showDocument_();
    return taken;
}

}  // namespace OverlayEditor
