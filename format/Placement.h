#pragma once

#include <optional>

#include "common/Vec3.h"
#include "geo/CoordinateConverter.h"
#include "geo/GeodesicPath.h"

namespace halCore::ZEL {

class ZelShape;

/// What relative shapes are placed against, and what shapes that follow turn with.
struct Reference {
    Vec3 position;         ///< latitude, longitude (radians), altitude (metres)
    double heading = 0.0;  ///< radians clockwise from north
    double pitch = 0.0;    ///< radians, nose up
    double roll = 0.0;     ///< radians, right side down

    friend bool operator==(const Reference&, const Reference&) = default;
};

/// Where a shape stands, and how finely it is drawn: turns its own coordinates into geodetic ones.
class Placement {
  public:
    Placement(const ZelShape& shape, const std::optional<Reference>& reference, double tolerance);

    bool relative() const { return relative_; }
    double tolerance() const { return tolerance_; }
    double yaw() const { return yaw_; }
    double pitch() const { return pitch_; }
    double roll() const { return roll_; }
    const Vec3& scale() const { return scale_; }
    bool extruded() const { return extruded_; }
    std::optional<double> extrudeHeight() const { return extrudeHeight_; }

    /// Nothing for what is not finite, leads beyond a pole, or is relative to nothing.
    std::optional<Vec3> place(const Vec3& position) const;
    /// The altitude at which a shape's own one is drawn.
    double altitude(double own) const { return clamped_ ? 0.0 : own + altitudeOffset_; }
    /// Whether flat shapes and bodies lean: what lies on the ground, or reaches down to it, stands upright.
    bool leans() const { return (pitch_ != 0.0 || roll_ != 0.0) && !clamped_ && !extruded_; }
    /// Where an extruded shape ends: so far above its own points, or else on the ground.
    Vec3 extrusionOf(const Vec3& p) const {
        return {p.lat(), p.lon(), extrudeHeight_ ? p.alt() + *extrudeHeight_ : 0.0};
    }
    GeodeticPath extrusionOf(GeodeticPath path) const;

  private:
    void setOrigin(const Vec3& origin);
    /// Scaled and turned with the body, still east, north and up.
    Vec3 turned(const Vec3& p) const;

    bool relative_;
    double tolerance_;
    std::optional<CoordinateConverter> frame_;  ///< of a relative shape with an origin
    Vec3 scale_{1.0, 1.0, 1.0};
    double yaw_ = 0.0;
    double pitch_ = 0.0;
    double roll_ = 0.0;
    double altitudeOffset_ = 0.0;
    bool clamped_ = false;
    bool extruded_ = false;
    std::optional<double> extrudeHeight_;
};

}  // namespace halCore::ZEL
