#include <ctime>
#include <iomanip>
#include <utility>

#include "common/Notify.h"
#include "gui/OverlayEditorDialog.h"
#include "gui/OverlayEditorDialogWidgets.h"

namespace OverlayEditor {

namespace {

constexpr const char* kRecoverLost = "Recover\tTake the shapes that were not saved into the editor";

}  // namespace

void OverlayEditorDialog::offerLost_() {
    if (!lost_) lost_ = document_.findLost();
    if (!lost_) return;
    const JournalHead& head = lost_->contents.head;
    std::tm local{};
    localtime_r(&head.written, &local);
    halNotify::notify(halNotify::Warning)
        << "Not saved when the host ended on " << std::put_time(&local, "%Y-%m-%d at %H:%M") << ": "
        << lost_->names() << (head.fileName.empty() ? "" : " of " + head.fileName)
        << ". They can be recovered";
    widgets_->messages.offer(kRecoverLost);
    answer_ = Answer::Lost;
}

void OverlayEditorDialog::recoverLost_() {
    if (!lost_ || !rescued_()) return;
    giveUpShapes_();
    document_.recover(*std::exchange(lost_, {}));
    fillList_();
    showDocument_();
    // One after the other.
    offerLost_();
}

}  // namespace OverlayEditor
