#include "tools/AnnotationMouseTool.h"

#include <sstream>

#include "tools/PUDrawPoints.h"

namespace OverlayEditor {

using halCore::Vec3;
using PluginUtils::PUDrawPoint;

AnnotationMouseTool::AnnotationMouseTool(const Preferences& preferences, AnnotationShape& shape)
    : ShapeMouseTool(preferences), shape_(shape) {}

AnnotationMouseTool::~AnnotationMouseTool() {
    deactivate();
}

std::string AnnotationMouseTool::getPointText_(const Vec3& pos) const {
    std::ostringstream text;
    appendLLAText_(text, pos);
    return text.str();
}

void AnnotationMouseTool::handleFinishDrag_(const Vec3& pos) {
    shape_.mouseSetPosition(pos);
    if (!isActive()) return;
    state_ = Complete;
    updateEditPoints_();
}

PUDrawPoint* AnnotationMouseTool::pointNearMouse_(const Vec3& pos) {
    grabbed_ = point_ && PluginUtils::canGrab(*point_, pos, view_);
    return grabbed_ ? point_.get() : nullptr;
}

void AnnotationMouseTool::redrawPointsForViewChange_() {
    // The panel moves the label, too.
    updateEditPoints_();
    if (point_) picture_.add(*point_);
}

void AnnotationMouseTool::showEditPoints_(bool shown) {
    if (!shape_.hasPoint()) return;
    if (!point_) {
        point_ = createEditPoint(shape_.position(), PluginUtils::kEditPointColor);
        // The label's own text lies beneath it.
        point_->setHollow(true);
    }
    if (point_->getPosition() != shape_.position()) point_->setPosition(shape_.position());
    if (shown)
        point_->show();
    else
        point_->hide();
}

void AnnotationMouseTool::moveGrabbed_(const Vec3& pos) {
    if (grabbed_ && shape_.position() != pos) shape_.mouseSetPosition(pos);
}

std::string_view AnnotationMouseTool::placingHint_() const {
    return pressed_ ? "Release where the label is to stand"
                    : "Click where the label is to stand. Shift + wheel sets the altitude";
}

}  // namespace OverlayEditor
