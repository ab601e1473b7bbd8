#include "tools/OrbitMouseTool.h"

#include <sstream>

#include "pi/Guard.h"

namespace OverlayEditor {

using halCore::Vec3;

OrbitMouseTool::OrbitMouseTool(const Preferences& preferences, OrbitShape& shape)
    : ThreePointMouse(preferences, shape), orbit_(shape) {}

OrbitMouseTool::~OrbitMouseTool() {
    guardedEnd([this] { deactivate(); });
}

std::string OrbitMouseTool::getPointText_(const Vec3& pos) const {
    std::ostringstream text;
    appendLLAText_(text, pos);
    if (!orbit_.centerPt()) return text.str();
    if (grabbed() == MajorAxis || !orbit_.centerPt2()) {
        appendRange_(text, " Dist: ", radiusAt_(pos));
        appendBearing_(text, center_(), pos);
    } else if (grabbed() == Center) {
        if (orbit_.minorAxisPt()) appendRange_(text, " Rad: ", orbit_.minorAxis());
    } else {
        appendRange_(text, " Rad: ", orbit_.getShortestDistance_(pos));
    }
    return text.str();
}

void OrbitMouseTool::handleFinishDrag_(const Vec3& pos) {
    if (releasedOnPoint_(pos) || !orbit_.centerPt()) {
        handleAbortDrag_();
        return;
    }
    if (!orbit_.centerPt2())
        orbit_.setCenter2(pos);
    else
        orbit_.setMinorRadius(pos);
    orbit_.setAltitude(pos.alt());
    state_ = restingState_();
    shapeChanged_();
}

void OrbitMouseTool::movePoint_(Grabbed grabbed, const Vec3& pos) {
    const auto from = placeOf_(grabbed);
    if (!from) return;
    if (pos.alt() != from->alt()) orbit_.setAltitude(pos.alt());
    if (pos.lat() == from->lat() && pos.lon() == from->lon()) return;
    if (grabbed == Center)
        orbit_.moveFirstCenter(pos);
    else if (grabbed == MajorAxis)
        orbit_.setCenter2(pos);
    else
        orbit_.setMinorRadius(pos);
}

void OrbitMouseTool::spanRubberBand_(CylinderShape& rubberBand, const Vec3& pos) const {
    auto& orbit = static_cast<OrbitShape&>(rubberBand);
    orbit.clear();
    orbit.setCenter(center_());
    orbit.setCenter2(orbit_.centerPt2() ? *orbit_.centerPt2() : pos);
    if (orbit_.centerPt2()) orbit.setMinorRadius(pos);
    orbit.setAltitude(pos.alt());
}

std::optional<Vec3> OrbitMouseTool::pivot_() const {
    const bool second = state_ == Dragging ? grabbed() == MajorAxis : !orbit_.centerPt2();
    if (second) return orbit_.centerPt();
    return state_ == Dragging && grabbed() == Center ? orbit_.centerPt2() : std::nullopt;
}

std::string_view OrbitMouseTool::placingHint_() const {
    if (orbit_.centerPt2())
        return pressed_ ? "Release where the rim is to pass"
                        : "Press, drag and release where the rim is to pass";
    if (pressed_) return "Release at the second centre. Releasing on the first one starts again";
    if (orbit_.centerPt()) return "Press, drag and release at the second centre";
    return "Press at the first centre and drag to the second. Shift + wheel sets the altitude";
}

}  // namespace OverlayEditor
