#include "tools/ArcMouseTool.h"

#include <sstream>

#include "geo/Angles.h"
#include "geo/PathMeasure.h"
#include "model/ShapeKinds.h"
#include "pi/Guard.h"

namespace OverlayEditor {

using halCore::Vec3;

ArcMouseTool::ArcMouseTool(const Preferences& preferences, CylinderShape& shape)
    : CylinderMouseTool(preferences, shape, {Center, StartAngle, EndAngle, MajorAxis, MinorAxis}) {}

ArcMouseTool::~ArcMouseTool() {
    guardedEnd([this] { deactivate(); });
}

std::string ArcMouseTool::getPointText_(const Vec3& pos) const {
    std::ostringstream text;
    appendLLAText_(text, pos);
    if (!shape_.centerPt()) return text.str();

    const bool atCenter = grabbed() == Center || grabbed() == Height;
    const double major = shape_.majorAxis();
    const double minor = shape_.minorAxis();
    if (grabbed() == None) {
        appendRange_(text, " Rad: ", radiusAt_(pos));
    } else if (minor == 0.0 || major == minor) {
        appendRange_(text, " Rad: ", major);
    } else {
        if (grabbed() != MinorAxis) appendRange_(text, " XRad: ", major);
        if (grabbed() != MajorAxis) appendRange_(text, " YRad: ", minor);
    }
    if (!atCenter) appendBearing_(text, center_(), pos);
    if (!shape_.startAnglePt()) return text.str();
    const bool placed = grabbed() == None;
    const double start = shape_.startAngle();
    const double sweep = halCore::wrapToTwoPi((placed ? bearingAt_(pos) : shape_.endAngle()) - start);
    const double east = placed ? radiusAt_(pos) : major;
    const double north = placed ? east : minor;
    if (east > 0.0 && north > 0.0)
        appendArea_(text, halCore::areaOfSector(center_(), east, north, start,
                                                sweep > 0.0 ? sweep : halCore::kTwoPi));
    return text.str();
}

void ArcMouseTool::handleStartDrag_(const Vec3& pos) {
    firstPress_ = !shape_.centerPt();
    if (!firstPress_) return;
    shape_.setCenter(pos);
    shapeChanged_();
}

void ArcMouseTool::handleFinishDrag_(const Vec3& pos) {
    if (releasedOnPoint_(pos) || !shape_.centerPt()) {
        handleAbortDrag_();
        return;
    }
    lift_(pos.alt());
    if (!shape_.startAnglePt()) {
        shape_.setMajorRadius(pos);
        shape_.setStartAnglePt(pos);
        shapeChanged_();
        return;
    }
    const double radius = radiusAt_(pos);
    shape_.setMajorRadius(radius);
    shape_.setEndAnglePt(pos);
    if (shape_.kind().height == ShapeKind::Height::Own) shape_.setHeight(CylinderShape::kWedgeHeight);
    // Last: with a minor radius the arc counts as complete, and is shown.
    shape_.setMinorRadius(radius);
    shape_.updatePoints();
    complete_();
}

void ArcMouseTool::handleAbortDrag_() {
    if (firstPress_ && !shape_.startAnglePt()) resetShape_();
}

void ArcMouseTool::movePoint_(Grabbed grabbed, const Vec3& pos) {
    if (grabbed == Center) {
        shape_.moveCenter(pos);
        return;
    }
    lift_(pos.alt());
    // On the centre there is no radius and no bearing: the last ones stay until the cursor goes on.
    if (shape_.isComplete() && isOn_(pos, center_())) return;
    if (!shape_.isComplete()) {
        shape_.setMajorRadius(pos);
        shape_.setStartAnglePt(pos);
        return;
    }
    if (grabbed == MajorAxis) shape_.setMajorRadius(radiusAt_(pos));
    if (grabbed == MinorAxis) shape_.setMinorRadius(radiusAt_(pos));
    if (grabbed == StartAngle) shape_.setStartAnglePt(pos);
    if (grabbed == EndAngle) shape_.setEndAnglePt(pos);
    shape_.updatePoints();
}

void ArcMouseTool::spanRubberBand_(CylinderShape& rubberBand, const Vec3& pos) const {
    const double radius = radiusAt_(pos);
    const double bearing = bearingAt_(pos);
    rubberBand.setInnerRadius(radius);
    // While there is no start yet, the quarter that would begin at the cursor.
    const bool started = shape_.startAnglePt().has_value();
    rubberBand.setStartAngle(started ? shape_.startAngle() : bearing);
    rubberBand.setEndAngle(started ? bearing : bearing + halCore::kHalfPi);
}

std::string_view ArcMouseTool::placingHint_() const {
    if (shape_.startAnglePt())
        return pressed_ ? "Release at the end of the arc. The radius follows"
                        : "Press, drag and release at the end of the arc";
    if (pressed_) return "Release at the start of the arc. Releasing on the centre starts again";
    if (shape_.centerPt()) return "Press, drag and release at the start of the arc";
    return "Press at the centre and drag to the start of the arc. Shift + wheel sets the altitude";
}

}  // namespace OverlayEditor
