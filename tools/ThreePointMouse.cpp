#include "tools/ThreePointMouse.h"

#include <sstream>

#include "geo/Angles.h"
#include "geo/PathMeasure.h"
#include "model/ShapeKinds.h"
#include "pi/Guard.h"

namespace OverlayEditor {

using halCore::Vec3;

ThreePointMouse::ThreePointMouse(const Preferences& preferences, CylinderShape& shape)
    : CylinderMouseTool(preferences, shape, {Center, MajorAxis, MinorAxis}) {}

ThreePointMouse::~ThreePointMouse() {
    guardedEnd([this] { deactivate(); });
}

std::string ThreePointMouse::getPointText_(const Vec3& pos) const {
    std::ostringstream text;
    appendLLAText_(text, pos);
    if (!shape_.centerPt()) return text.str();

    const double major = shape_.majorAxis();
    const double placed = grabbed() == None ? radiusAt_(pos) : 0.0;
    if (major == 0.0) {
        appendRange_(text, " Rad: ", placed);
    } else {
        const double minor = grabbed() == None ? placed : shape_.minorAxis();
        appendRange_(text, " XRad: ", major);
        if (minor != 0.0) appendRange_(text, " YRad: ", minor);
        if (minor != 0.0 && shape_.subtype() == CylinderShape::Ellipse)
            appendArea_(text, halCore::areaOfSector(center_(), major, minor, 0.0, halCore::kTwoPi));
    }
    return text.str();
}

void ThreePointMouse::handleStartDrag_(const Vec3& pos) {
    firstPress_ = !shape_.centerPt();
    if (!firstPress_) return;
    shape_.setCenter(pos);
    shapeChanged_();
}

void ThreePointMouse::handleFinishDrag_(const Vec3& pos) {
    if (releasedOnPoint_(pos) || !shape_.centerPt()) {
        handleAbortDrag_();
        return;
    }
    lift_(pos.alt());
    if (shape_.majorAxis() == 0.0) {
        shape_.setMajorRadius(pos);
        shapeChanged_();
        return;
    }
    // A cylinder and an ellipsoid get theirs from the user.
    if (shape_.kind().height != ShapeKind::Height::Own) shape_.setHeight(0.0);
    shape_.setMinorRadius(radiusAt_(pos));
    shape_.updatePoints();
    complete_();
}

void ThreePointMouse::handleAbortDrag_() {
    if (firstPress_ && shape_.majorAxis() == 0.0) resetShape_();
}

void ThreePointMouse::movePoint_(Grabbed grabbed, const Vec3& pos) {
    if (grabbed == Center) {
        shape_.moveCenter(pos);
        return;
    }
    lift_(pos.alt());
    // On the centre there is no radius and no bearing: the last ones stay until the cursor goes on.
    if (shape_.isComplete() && isOn_(pos, center_())) return;
    if (!shape_.isComplete())
        shape_.setMajorRadius(pos);
    else if (grabbed == MajorAxis)
        shape_.setMajorRadius(radiusAt_(pos));
    else
        shape_.setMinorRadius(radiusAt_(pos));
}

void ThreePointMouse::spanRubberBand_(CylinderShape& rubberBand, const Vec3& pos) const {
    const double radius = radiusAt_(pos);
    const double major = shape_.majorAxis();
    rubberBand.setInnerRadius(radius);
    if (major != 0.0) rubberBand.setMajorRadius(major);
}

std::string_view ThreePointMouse::placingHint_() const {
    if (shape_.majorAxis() != 0.0)
        return pressed_ ? "Release at the Y radius"
                        : "Press, drag and release at the Y radius (to the north)";
    if (pressed_) return "Release at the X radius. Releasing on the centre starts again";
    if (shape_.centerPt()) return "Press, drag and release at the X radius (to the east)";
    return "Press at the centre and drag to the X radius (to the east). Shift + wheel sets the altitude";
}

}  // namespace OverlayEditor
