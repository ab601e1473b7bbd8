#include "gui/SelectExistingZELDialog.h"

#include "gui/Captions.h"
#include "gui/HostLists.h"
#include "model/Utils.h"
#include "pi/Guard.h"
#include "pi/PIData.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

/// What the host unloads leaves the list: its handle is of no use any more.
class SelectExistingZELDialog::ZELEventObserver final : public PIHALVIS::ZELEventObserver {
  public:
    explicit ZELEventObserver(FunctorTwoParams__* refresh) : refresh_(refresh) {}
    void addedZEL(void*) override {}
    void removedZEL(void*) override { refresh_->Call(nullptr, nullptr); }

  private:
    FunctorTwoParams__* refresh_;
};

SelectExistingZELDialog::SelectExistingZELDialog(FunctorTwoParams__* onOk)
    : observer_(std::make_unique<ZELEventObserver>(callbacks_.make(&SelectExistingZELDialog::onCmdRefresh))),
      box_(nullptr, "Select Existing ZEL\tDisplays all the ZELs currently loaded in HALVIS"),
      list_(&box_, PIGUI::PIListSingle, "ZEL File Name\tPlatform"),
      buttons_(&box_, PIGUI::PILayoutFillX),
      ok_(&buttons_, "OK\tLoad the selected existing ZEL", onOk),
      refresh_(&buttons_, "Refresh\tUpdate the ZEL list",
               callbacks_.make(&SelectExistingZELDialog::onCmdRefresh)),
      cancel_(&buttons_, "Cancel\tLoad nothing", callbacks_.make(&SelectExistingZELDialog::onCmdCancel)) {
    list_.setRoom(80, kRowsOfSelection);
    list_.mapFunction(callbacks_.make(&SelectExistingZELDialog::onCmdSelection));
    list_.setChosenCallback(onOk);
    ok_.disable();
    PIHALVIS::registerZELObserver(observer_.get());
}

SelectExistingZELDialog::~SelectExistingZELDialog() {
    callbacks_.disconnect();
    guardedEnd([this] { PIHALVIS::removeZELObserver(observer_.get()); });
}

void SelectExistingZELDialog::show() {
    refreshZELList();
    selectOnlyItem(list_);
    ok_.setEnabled(list_.getSelectedItem() >= 0);
    box_.show();
}

void SelectExistingZELDialog::refreshZELList() {
    std::vector<PIGUI::PIList::Item> items;
    const auto append = [&items](const std::vector<void*>& overlays, const std::string& platform) {
        for (void* const overlay : overlays)
            items.push_back({oneLine(PIHALVIS::getZELFilename(overlay)) + "\t" + oneLine(platform), overlay});
    };
    for (const std::uint64_t platform : PIData::getPlatformList()) {
        const std::vector<void*> overlays = PIHALVIS::getAttachedZELFiles(platform);
        if (!overlays.empty()) append(overlays, Utils::platformName(platform));
    }
    append(PIHALVIS::getZELFiles(), "Absolute");
    list_.setItems(std::move(items));
    ok_.setEnabled(list_.getSelectedItem() >= 0);
}

int SelectExistingZELDialog::getSelection(std::string& fileName, unsigned long& handle) const {
    const std::int32_t item = list_.getSelectedItem();
    if (item < 0) return 1;
    fileName = list_.getItemText(item);
    handle = idOfItem(list_.getItemData(item));
    return 0;
}

int SelectExistingZELDialog::onCmdRefresh(PIObject*, void*) {
    refreshZELList();
    return 1;
}

int SelectExistingZELDialog::onCmdSelection(PIObject*, void*) {
    ok_.setEnabled(list_.getSelectedItem() >= 0);
    return 1;
}

int SelectExistingZELDialog::onCmdCancel(PIObject*, void*) {
    hide();
    return 1;
}

}  // namespace OverlayEditor
