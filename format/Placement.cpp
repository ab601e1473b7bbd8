#include "format/Placement.h"

#include <cmath>

#include "format/ZelShapes.h"
#include "geo/Angles.h"
#include "geo/Ecef.h"

namespace halCore::ZEL {

Placement::Placement(const ZelShape& shape, const std::optional<Reference>& reference, double tolerance)
    : relative_(shape.isRelative()), tolerance_(tolerance) {
    Vec3 own;
    if (shape.getReferencePosition(own) == 0)
        setOrigin(own);
    else if (reference)
        setOrigin(reference->position);
    shape.getScale(scale_);
    bool follow = false;
    double offset = 0.0;
    shape.getYawOffset(offset);
    shape.getFollowYaw(follow);
    yaw_ = offset + (follow && reference ? reference->heading : 0.0);
    shape.getPitchOffset(offset);
    shape.getFollowPitch(follow);
    pitch_ = offset + (follow && reference ? reference->pitch : 0.0);
    shape.getRollOffset(offset);
    shape.getFollowRoll(follow);
    roll_ = offset + (follow && reference ? reference->roll : 0.0);
    shape.getAltitudeOffset(altitudeOffset_);
    AltitudeMode mode = AltitudeMode::None;
    shape.getAltitudeMode(mode);
    clamped_ = mode == AltitudeMode::ClampToGround;
    extruded_ = mode == AltitudeMode::Extrude;
    double height = 0.0;
    if (shape.getExtrudeHeight(height) == 0) extrudeHeight_ = height;
}

std::optional<Vec3> Placement::place(const Vec3& position) const {
    if (!std::isfinite(position.x()) || !std::isfinite(position.y()) || !std::isfinite(position.z()))
        return std::nullopt;
    Vec3 result = position;
    if (relative_) {
        Coordinate placed;
        if (!frame_ || frame_->convert({CoordinateSystem::FlatEnu, turned(position)}, placed,
                                       CoordinateSystem::Lla) != 0)
            return std::nullopt;
        result = placed.position();
    }
    if (std::abs(result.lat()) > kHalfPi) return std::nullopt;
    result.setAlt(altitude(result.alt()));
    return result;
}

GeodeticPath Placement::extrusionOf(GeodeticPath path) const {
    for (Vec3& p : path) p = extrusionOf(p);
    return path;
}

void Placement::setOrigin(const Vec3& origin) {
    if (relative_) frame_.emplace().setReferenceOrigin(origin);
}

Vec3 Placement::turned(const Vec3& p) const {
    const double right = p.x() * scale_.x();
    const double forward = p.y() * scale_.y();
    const double up = p.z() * scale_.z();
    if (yaw_ == 0.0 && pitch_ == 0.0 && roll_ == 0.0) return {right, forward, up};
    // bodyFrame() at 0°/0°, where east is y, north is z and up is x.
    const BodyFrame frame = bodyFrame(Vec3(), yaw_, pitch_, roll_);
    const Ecef v = frame.right * right + frame.forward * forward + frame.up * up;
    return {v.y, v.z, v.x};
}

}  // namespace halCore::ZEL
