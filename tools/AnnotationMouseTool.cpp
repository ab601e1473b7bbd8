#include "tools/AnnotationMouseTool.h"

#include <sstream>

#include "pi/Guard.h"

namespace OverlayEditor {

using halCore::Vec3;

AnnotationMouseTool::AnnotationMouseTool(const Preferences& preferences, AnnotationShape& shape)
    : HandleMouseTool(preferences, shape, {1}), shape_(shape) {}

AnnotationMouseTool::~AnnotationMouseTool() {
    guardedEnd([this] { deactivate(); });
}

std::string AnnotationMouseTool::getPointText_(const Vec3& pos) const {
    std::ostringstream text;
    appendLLAText_(text, pos);
    return text.str();
}

void AnnotationMouseTool::handleFinishDrag_(const Vec3& pos) {
    shape_.mouseSetPosition(pos);
    state_ = Complete;
    updateEditPoints_();
}

std::optional<Vec3> AnnotationMouseTool::placeOf_(Role) const {
    return shape_.hasPoint() && isPlace(shape_.position()) ? std::optional(shape_.position()) : std::nullopt;
}

void AnnotationMouseTool::moveGrabbed_(const Vec3& pos) {
    if (grabbedRole_ != 0 && shape_.position() != pos) shape_.mouseSetPosition(pos);
}

std::string_view AnnotationMouseTool::placingHint_() const {
    return pressed_ ? "Release where the label is to stand"
                    : "Click where the label is to stand. Shift + wheel sets the altitude";
}

}  // namespace OverlayEditor
