#include <ctime>
#include <iomanip>
#include <sstream>
#include <utility>

#include "gui/OverlayEditorDialog.h"
#include "gui/OverlayEditorDialogWidgets.h"

namespace OverlayEditor {

void OverlayEditorDialog::offerLost() {
    widgets_->messages.tellLost([this]() -> std::string {
        if (!lost_) lost_ = document_.findLost();
        if (!lost_) return {};
        const std::time_t written = lost_->file->written();
        std::tm local{};
        localtime_r(&written, &local);
        const std::string& file = lost_->contents.head.fileName;
        std::ostringstream text;
        text << "Not saved when the host ended on " << std::put_time(&local, "%Y-%m-%d at %H:%M") << ": "
             << lost_->names() << (file.empty() ? "" : " of " + file)
             << (lost_->contents.damaged ? "; a part of it is damaged" : "");
        return text.str();
    });
}

int OverlayEditorDialog::onCmdRecoverLost(PIObject*, void*) {
    if (!lost_ || !rescued_()) return 1;
    cancelLoading_("something else is loaded");
    giveUpShapes_();
    document_.recover(*std::exchange(lost_, {}));
    fillList_();
    showDocument_();
    // One after the other.
    offerLost();
    return 1;
}

int OverlayEditorDialog::onCmdDiscardLost(PIObject*, void*) {
    if (!lost_ || !document_.discard(*lost_)) return 1;
    lost_.reset();
    offerLost();
    return 1;
}

}  // namespace OverlayEditor
