#include "gui/SelectPlatformDialog.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "gui/Captions.h"
#include "gui/HostLists.h"
#include "model/Utils.h"
#include "pi/Guard.h"
#include "pi/PIData.h"

namespace OverlayEditor {

class SelectPlatformDialog::PlatformSelectListener final : public PlatformMouseListener {
  public:
    explicit PlatformSelectListener(SelectPlatformDialog& dialog) : dialog_(&dialog) {}
    void platformSelected(unsigned long platformId) override {
        if (dialog_) dialog_->picked_(platformId);
    }
    void deactivated() override {
        if (dialog_) dialog_->pickingEnded_();
    }
    void disconnect() { dialog_ = nullptr; }

  private:
    SelectPlatformDialog* dialog_;
};

class SelectPlatformDialog::CloseObserver final : public PIGUI::PICloseObserver {
  public:
    explicit CloseObserver(FunctorTwoParams__* close) : close_(close) {}
    void onClose(PIObject*) override { close_->Call(nullptr, nullptr); }

  private:
    FunctorTwoParams__* close_;
};

SelectPlatformDialog::SelectPlatformDialog(MouseManager* mouseManager, FunctorTwoParams__* onOk,
                                           FunctorTwoParams__* onPick)
    : mouseManager_(mouseManager),
      onPick_(onPick),
      listener_(std::make_shared<PlatformSelectListener>(*this)),
      closeObserver_(std::make_unique<CloseObserver>(callbacks_.make(&SelectPlatformDialog::onCmdClosed))),
      pickerOwner_(new PlatformMouseTool),
      picker_(static_cast<PlatformMouseTool*>(pickerOwner_.get())),
      box_(nullptr, "Select Platform"),
      list_(&box_, PIGUI::PIListSingle, "Name"),
      centerOnHost_(&box_,
                    "Center On Host\tMove the attached shape to center it on the host platform, otherwise "
                    "attached shape offsets to be relative to host from current position.",
                    nullptr),
      buttons_(&box_, PIGUI::PILayoutFillX),
      pick_(&buttons_, "Pick\tAllow mouse to left-click and pick the platform in HALVIS",
            callbacks_.make(&SelectPlatformDialog::onCmdPick)),
      refresh_(&buttons_, "Refresh\tUpdate the platform list",
               callbacks_.make(&SelectPlatformDialog::onCmdRefresh)),
      ok_(&buttons_, "OK\tAttach the current ZEL to the selected platform", onOk),
      cancel_(&buttons_, "Cancel\tLeave the attachment as it is",
              callbacks_.make(&SelectPlatformDialog::onCmdClosed)) {
    list_.setRoom(40, kRowsOfSelection);
    list_.setChosenCallback(onOk);
    ok_.disable();
    list_.mapFunction(callbacks_.make(&SelectPlatformDialog::onCmdPlatformList));
    // The first uncheck makes it a toggle button.
    pick_.uncheck();
    picker_->setListener(listener_);
    box_.registerCloseObserver(closeObserver_.get());
}

SelectPlatformDialog::~SelectPlatformDialog() {
    listener_->disconnect();
    callbacks_.disconnect();
    guardedEnd([this] { stopPicking_(); });
}

void SelectPlatformDialog::show() {
    // Moving the shapes is asked for anew each time.
    if (centerOnHost_.isChecked()) centerOnHost_.uncheck();
    refreshPlatformList();
    selectOnlyItem(list_);
    ok_.setEnabled(selectedPlatform() != 0);
    box_.show();
    pick_.check();
    onCmdPick(nullptr, nullptr);
}

void SelectPlatformDialog::hide() {
    stopPicking_();
    box_.hide();
}

void SelectPlatformDialog::stopPicking_() {
    if (mouseManager_->currentMouseTool() == picker_) mouseManager_->clearMouseTool();
}

void SelectPlatformDialog::refreshPlatformList() {
    std::vector<PIGUI::PIList::Item> items;
    for (const std::uint64_t id : PIData::getPlatformList())
        items.push_back({Utils::platformName(id), itemData(id)});
    std::ranges::stable_sort(items, {}, &PIGUI::PIList::Item::text);
    for (auto& item : items) item.text = oneLine(std::move(item.text));
    list_.setItems(std::move(items));
    ok_.setEnabled(selectedPlatform() != 0);
}

unsigned long SelectPlatformDialog::selectedPlatform() const {
    const std::int32_t item = list_.getSelectedItem();
    return item < 0 ? 0 : idOfItem(list_.getItemData(item));
}

void SelectPlatformDialog::select_(unsigned long platform) {
    for (std::int32_t i = 0, count = list_.getNumItems(); i < count; ++i) {
        if (idOfItem(list_.getItemData(i)) != platform) continue;
        list_.deselectAll();
        list_.setSelectedItem(i);
        ok_.enable();
        return;
    }
}

int SelectPlatformDialog::onCmdPlatformList(PIObject*, void*) {
    const unsigned long platform = selectedPlatform();
    if (platform) select_(platform);
    ok_.setEnabled(platform != 0);
    return 1;
}

int SelectPlatformDialog::onCmdPick(PIObject*, void*) {
    if (pick_.isChecked())
        mouseManager_->setCurrentMouseTool(picker_, true);
    else
        stopPicking_();
    if (onPick_) onPick_->Call(&pick_, nullptr);
    return 1;
}

int SelectPlatformDialog::onCmdClosed(PIObject*, void*) {
    hide();
    if (closed_) closed_();
    return 1;
}

int SelectPlatformDialog::onCmdRefresh(PIObject*, void*) {
    refreshPlatformList();
    return 1;
}

void SelectPlatformDialog::picked_(unsigned long platform) {
    if (platform == 0) return;
    select_(platform);
    if (selectedPlatform() != platform) {
        refreshPlatformList();
        select_(platform);
    }
    // The same platform can be picked again.
    picker_->clearSelected();
}

void SelectPlatformDialog::pickingEnded_() {
    pick_.uncheck();
}

}  // namespace OverlayEditor
