#include "gui/AttachedZelGui.h"

#include <utility>

#include "common/Notify.h"
#include "gui/Captions.h"
#include "model/Utils.h"
#include "pi/PIData.h"

namespace OverlayEditor {

namespace {

constexpr const char* kTooltip =
    "\tAttach the current ZEL to a selected platform, requires save to be effective";

/// More of a name is cut, so that no name changes the form.
constexpr std::int32_t kNameLetters = 26;

}  // namespace

AttachedZelGui::AttachedZelGui(PIGUI::PICanvas* parent, MouseManager* mouseManager,
                               FunctorTwoParams__* change, FunctorTwoParams__* pickChange)
    : change_(change),
      caption_(parent, std::string("Attach:") + kTooltip),
      check_(parent, std::string(EMPTY_PLATFORM_NAME) + kTooltip,
             callbacks_.make(&AttachedZelGui::onCmdSelect)),
      platforms_(mouseManager, callbacks_.make(&AttachedZelGui::onCmdSelected), pickChange) {
    check_.setRoom(kNameLetters, 1);
    // Closed without a choice: the row shows again what is.
    platforms_.setClosedCallback([this] { setAttachPlatform(platform_); });
}

void AttachedZelGui::setAttachPlatform(unsigned long id) {
    platform_ = id;
    check_.setValue(oneLine(id ? Utils::platformName(id) : EMPTY_PLATFORM_NAME) +
                    (why_.empty() ? kTooltip : "\t" + why_));
    check_.setCheck(id != 0);
}

void AttachedZelGui::hideDialog() {
    if (!platforms_.shown()) return;
    platforms_.hide();
    setAttachPlatform(platform_);
}

void AttachedZelGui::setControlsEnabled(bool enabled, const std::string& why) {
    const std::string tooltip = enabled ? std::string() : why;
    check_.setEnabled(enabled);
    if (!enabled) hideDialog();
    if (std::exchange(why_, tooltip) != tooltip) setAttachPlatform(platform_);
}

void AttachedZelGui::refreshPlatformList() {
    if (platforms_.shown()) platforms_.refreshPlatformList();
}

int AttachedZelGui::onCmdSelect(PIObject*, void*) {
    if (check_.isChecked()) {
        platforms_.show();
        return 1;
    }
    platforms_.hide();
    reset();
    change_->Call(&check_, nullptr);
    return 1;
}

int AttachedZelGui::onCmdSelected(PIObject*, void*) {
    unsigned long id = platforms_.selectedPlatform();
    if (id == 0) {
        halNotify::notify(halNotify::Warning) << "Not attached: no platform is selected";
        return 1;
    }
    PIData::PIPlatformHeader header;
    if (PIData::getHeader(id, header) != 0) {
        halNotify::notify(halNotify::Warning)
            << "Not attached: the selected platform is gone. The list is up to date again";
        platforms_.refreshPlatformList();
        return 1;
    }
    setAttachPlatform(id);
    platforms_.hide();
    change_->Call(&check_, &id);
    return 1;
}

}  // namespace OverlayEditor
