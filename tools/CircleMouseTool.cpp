#include "tools/CircleMouseTool.h"

#include <sstream>

#include "geo/PathMeasure.h"
#include "pi/Guard.h"

namespace OverlayEditor {

using halCore::Vec3;

CircleMouseTool::CircleMouseTool(const Preferences& preferences, CylinderShape& shape)
    : CylinderMouseTool(preferences, shape, {Center, MajorAxis}) {}

CircleMouseTool::~CircleMouseTool() {
    guardedEnd([this] { deactivate(); });
}

std::string CircleMouseTool::getPointText_(const Vec3& pos) const {
    double radius = shape_.majorAxis();
    if (grabbed() == None && shape_.centerPt()) radius = radiusAt_(pos);
    std::ostringstream text;
    appendLLAText_(text, pos);
    appendRange_(text, " Rad: ", radius);
    if (shape_.subtype() == CylinderShape::Circle && shape_.centerPt() && radius > 0.0)
        appendArea_(text, halCore::areaOfDisc(center_(), radius));
    return text.str();
}

void CircleMouseTool::handleStartDrag_(const Vec3& pos) {
    firstPress_ = !shape_.centerPt();
    if (!firstPress_) return;
    shape_.setCenter(pos);
    shapeChanged_();
}

void CircleMouseTool::handleFinishDrag_(const Vec3& pos) {
    if (releasedOnPoint_(pos)) {
        handleAbortDrag_();
        return;
    }
    if (!shape_.centerPt() || shape_.majorAxis() != 0.0) return;
    lift_(pos.alt());
    shape_.setMajorRadius(pos);
    complete_();
}

void CircleMouseTool::handleAbortDrag_() {
    if (shape_.centerPt() && shape_.majorAxis() == 0.0) resetShape_();
}

void CircleMouseTool::movePoint_(Grabbed grabbed, const Vec3& pos) {
    const auto onEdge = shape_.majorAxisPt();
    const auto fixed = grabbed == Center ? onEdge : shape_.centerPt();
    // Centre and edge in one point are no circle: the last one stays until the cursor goes on.
    if (fixed && isOn_(pos, *fixed)) {
        lift_(pos.alt());
        return;
    }
    if (grabbed == Center) {
        shape_.setCenter(pos);
        if (onEdge) shape_.setMajorRadius(Vec3(onEdge->lat(), onEdge->lon(), pos.alt()));
        return;
    }
    lift_(pos.alt());
    shape_.setMajorRadius(pos);
}

void CircleMouseTool::spanRubberBand_(CylinderShape& rubberBand, const Vec3& pos) const {
    rubberBand.setMajorRadius(pos);
}

std::string_view CircleMouseTool::placingHint_() const {
    if (pressed_) return "Release on the edge. Releasing on the centre starts again";
    if (shape_.centerPt()) return "Press, drag and release on the edge";
    return "Press at the centre and drag to the edge. Shift + wheel sets the altitude";
}

}  // namespace OverlayEditor
