#pragma once

#include <optional>

#include "common/Vec3.h"
#include "geo/CoordinateConverter.h"
#include "globe/GeodesicPath.h"
#include "globe/OverlayScene.h"

namespace sandbox {

/// Where a shape stands, and how finely it is drawn: turns its own coordinates into geodetic ones.
class Placement {
  public:
    Placement(const halCore::ZEL::ZelShape& shape, const std::optional<OverlayReference>& reference,
              double tolerance);

    bool relative() const { return relative_; }
    double tolerance() const { return tolerance_; }
    double yaw() const { return yaw_; }
    double pitch() const { return pitch_; }
    double roll() const { return roll_; }
    const halCore::Vec3& scale() const { return scale_; }
    bool extruded() const { return extruded_; }
    std::optional<double> extrudeHeight() const { return extrudeHeight_; }

    /// Nothing for what is not finite, leads beyond a pole, or is relative to nothing.
    std::optional<halCore::Vec3> place(const halCore::Vec3& position) const;
    /// The altitude at which a shape's own one is drawn.
    double altitude(double own) const { return clamped_ ? 0.0 : own + altitudeOffset_; }
    /// Whether flat shapes and bodies lean: what lies on the ground, or reaches down to it, stands upright.
    bool leans() const { return (pitch_ != 0.0 || roll_ != 0.0) && !clamped_ && !extruded_; }
    /// Where an extruded shape ends: so far above its own points, or else on the ground.
    halCore::Vec3 extrusionOf(const halCore::Vec3& p) const {
        return {p.lat(), p.lon(), extrudeHeight_ ? p.alt() + *extrudeHeight_ : 0.0};
    }
    GeodeticPath extrusionOf(GeodeticPath path) const;

  private:
    void setOrigin(const halCore::Vec3& origin);
    /// Scaled and turned with the body, still east, north and up.
    halCore::Vec3 turned(const halCore::Vec3& p) const;

    bool relative_;
    double tolerance_;
    std::optional<halCore::CoordinateConverter> frame_;  ///< of a relative shape with an origin
    halCore::Vec3 scale_{1.0, 1.0, 1.0};
    double yaw_ = 0.0;
    double pitch_ = 0.0;
    double roll_ = 0.0;
    double altitudeOffset_ = 0.0;
    bool clamped_ = false;
    bool extruded_ = false;
    std::optional<double> extrudeHeight_;
};

}  // namespace sandbox
