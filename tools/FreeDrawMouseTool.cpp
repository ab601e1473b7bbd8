#include "tools/FreeDrawMouseTool.h"

#include <cmath>
#include <sstream>

#include "pi/Guard.h"
#include "pi/PICommon.h"

namespace OverlayEditor {

using halCore::Vec3;
using PIGUI::PIMouseEvent;
using PIGUI::PIMouseEventType_t;

FreeDrawMouseTool::FreeDrawMouseTool(const Preferences& preferences, FreeDrawShape& shape)
    : ShapeMouseTool(preferences, shape), shape_(shape) {}

FreeDrawMouseTool::~FreeDrawMouseTool() {
    guardedEnd([this] { deactivate(); });
}

int FreeDrawMouseTool::leftPress_(PIMouseEventType_t type, const PIMouseEvent& event) {
    // On the handle of the whole drawing.
    if (nearPoint_ && ShapeMouseTool::leftPress_(type, event) != 0) return 1;
    // A press in mid-line: the release went elsewhere.
    if (state_ == Placing) handleAbortDrag_();
    const auto pos = cursorPosition_(event.x, event.y);
    if (!pos) return 0;
    lastX_ = event.x;
    lastY_ = event.y;
    rememberPlace_(event);
    handleStartDrag_(*pos);
    PICommon::forceOpenGLRedraw();
    return 1;
}

int FreeDrawMouseTool::leftRelease_(PIMouseEventType_t type, const PIMouseEvent& event) {
    if (state_ == Dragging) return ShapeMouseTool::leftRelease_(type, event);
    if (state_ != Placing) return 0;
    handleAbortDrag_();
    PICommon::forceOpenGLRedraw();
    return 1;
}

int FreeDrawMouseTool::rightPress_(PIMouseEventType_t type, const PIMouseEvent& event) {
    ShapeMouseTool::rightPress_(type, event);
    return 1;
}

int FreeDrawMouseTool::mouseMotion_(PIMouseEventType_t type, const PIMouseEvent& event) {
    const int result = ShapeMouseTool::mouseMotion_(type, event);
    if (state_ != Placing) return result;
    if (std::hypot(event.x - addedX_, event.y - addedY_) < precision_) return 1;
    if (const auto pos = cursorPosition_(event.x, event.y)) {
        rememberPlace_(event);
        shape_.addPoint(*pos);
    }
    return 1;
}

std::string FreeDrawMouseTool::getPointText_(const Vec3& pos) const {
    std::ostringstream text;
    appendLLAText_(text, pos);
    return text.str();
}

void FreeDrawMouseTool::handleStartDrag_(const Vec3& pos) {
    state_ = Placing;
    pressed_ = true;
    precision_ = shape_.pixelPrecision();
    shape_.startLine(pos);
}

void FreeDrawMouseTool::handleAbortDrag_() {
    pressed_ = false;
    state_ = Complete;
    if (!shape_.lines().empty() && shape_.lines().back().size() < 2)
        shape_.deletePointAtIndex(shape_.getNumPoints() - 1);
}

void FreeDrawMouseTool::rememberPlace_(const PIMouseEvent& event) {
    addedX_ = event.x;
    addedY_ = event.y;
}

}  // namespace OverlayEditor
