#include "tools/PlatformMouseTool.h"

#include <utility>

#include "pi/Guard.h"
#include "pi/PIHALVIS.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

using PIGUI::PIMouseEventType_t;

PlatformMouseTool::~PlatformMouseTool() {
    listener_.reset();
    guardedEnd([this] { deactivate(); });
}

void PlatformMouseTool::activate() {
    if (active_) return;
    active_ = true;
    PIGUI::grabMouse();
}

void PlatformMouseTool::deactivate() {
    if (!active_) return;
    active_ = false;
    pressedPlatform_ = 0;
    PIGUI::ungrabMouse();
    if (listener_) listener_->deactivated();
}

int PlatformMouseTool::handleMouseEvent(PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) {
    if (type == PIMouseEventType_t::LeftPress) return leftPress_(type, event);
    if (type == PIMouseEventType_t::LeftRelease) return leftRelease_(type, event);
    return 0;
}

int PlatformMouseTool::leftPress_(PIMouseEventType_t, const PIGUI::PIMouseEvent&) {
    if (!active_) return 0;
    pressedPlatform_ = PIHALVIS::getMouseCursorPlatform();
    return pressedPlatform_ != 0 ? 1 : 0;
}

int PlatformMouseTool::leftRelease_(PIMouseEventType_t, const PIGUI::PIMouseEvent&) {
    if (!active_) return 0;
    const unsigned long released = PIHALVIS::getMouseCursorPlatform();
    if (released != 0 && released == std::exchange(pressedPlatform_, 0)) {
        selectedPlatform_ = released;
        if (listener_) listener_->platformSelected(released);
        return 0;
    }
    pressedPlatform_ = 0;
    selectedPlatform_ = 0;
    return 0;
}

}  // namespace OverlayEditor
