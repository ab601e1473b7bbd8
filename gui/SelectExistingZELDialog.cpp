#include "gui/SelectExistingZELDialog.h"

#include "gui/HostLists.h"
#include "model/Utils.h"
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
               callbacks_.make(&SelectExistingZELDialog::onCmdRefresh)) {
    PIHALVIS::registerZELObserver(observer_.get());
}

SelectExistingZELDialog::~SelectExistingZELDialog() {
    PIHALVIS::removeZELObserver(observer_.get());
    callbacks_.disconnect();
}

void SelectExistingZELDialog::show() {
    refreshZELList();
    box_.show();
}

void SelectExistingZELDialog::refreshZELList() {
    std::string text;
    unsigned long selected = 0;
    getSelection(text, selected);
    list_.clearItems();
    for (const std::uint64_t platform : PIData::getPlatformList()) {
        const std::vector<void*> overlays = PIHALVIS::getAttachedZELFiles(platform);
        if (overlays.empty()) continue;
        const std::string name = Utils::platformName(platform);
        for (void* const overlay : overlays) append_(overlay, name);
    }
    for (void* const overlay : PIHALVIS::getZELFiles()) append_(overlay, "Absolute");
    for (std::int32_t i = 0, count = selected ? list_.getNumItems() : 0; i < count; ++i)
        if (idOfItem(list_.getItemData(i)) == selected) list_.setSelectedItem(i);
}

void SelectExistingZELDialog::append_(void* overlay, const std::string& platform) {
    list_.appendItem(PIHALVIS::getZELFilename(overlay) + "\t" + platform, overlay);
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

}  // namespace OverlayEditor
