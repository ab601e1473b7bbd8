#pragma once

#include <array>
#include <optional>

#include "common/Vec3.h"
#include "geo/Angles.h"
#include "geo/Ecef.h"

namespace sandbox {

/// Where a position appears in the view.
struct Projected {
    double x = 0.0;        ///< widget pixels from the left edge; may lie outside the view
    double y = 0.0;        ///< widget pixels from the top edge
    bool visible = false;  ///< in front of the eye and not hidden by the earth (x, y may still be outside)
};

/// A perspective camera that looks at a point on or above the WGS-84 ellipsoid from a range, azimuth and
/// elevation. Needs no OpenGL. Angles are radians, lengths metres, pixels are widget pixels (fractions
/// allowed) with the origin at the top left corner of the view.
///
/// Geometry for OpenGL is eye-relative: earth-centred position minus `eye()`, subtracted in double
/// precision. `modelview()` and `projection()` map such metres.
class Camera {
  public:
    static constexpr double kMinimumRange = 10.0;
    static constexpr double kMaximumRange = 2.0e8;
    /// Along the shorter side of the view, radians. From a range as long as a shape that is all of the shape
    /// and some ground about it, and from 7,000 km all that can be seen of the earth.
    static constexpr double kFieldOfView = halCore::kPi / 3;

    /// From where the whole earth is in the view, and not much beside it.
    static constexpr double kWholeEarthRange = 1.6e7;

    /// The point that is looked at. Latitude is clamped to the poles, longitude wrapped into [-pi, pi].
    const halCore::Vec3& center() const { return center_; }
    /// Distance from eye to centre.
    double range() const { return range_; }
    /// Direction of sight over ground, clockwise from north; 0 = north is up. In [0, 2 pi).
    double azimuth() const { return azimuth_; }
    /// pi/2 looks straight down, 0 along the ground. The eye never sinks below the ground.
    double elevation() const { return elevation_; }
    int width() const { return width_; }
    int height() const { return height_; }

    /// Values that are not finite are ignored.
    void setCenter(const halCore::Vec3& geodetic);
    void setRangeAzimuthElevation(double range, double azimuth, double elevation);
    void setRange(double range);
    /// The size of the view, at least 1 x 1.
    void setViewport(int width, int height);

    const halCore::Ecef& eye() const { return eye_; }
    halCore::Vec3 eyePosition() const { return toGeodetic(eye_); }

    /// Where the ray of sight through a pixel meets the ellipsoid (altitude 0); nothing when it passes by.
    std::optional<halCore::Vec3> pick(double x, double y) const;
    Projected project(const halCore::Vec3& geodetic) const { return project(toEcef(geodetic)); }
    Projected project(const halCore::Ecef& position) const;

    /// Moves the centre so that the ground position `grabbed` appears at the pixel. Azimuth and elevation
    /// stay; only close to a pole, where north-up allows no answer, the view turns. False when the pixel
    /// is off the globe or no answer was found; the camera is unchanged then.
    bool bring(const halCore::Vec3& grabbed, double x, double y);
    /// Changes the range by a factor while the place under the pixel stays there (or the centre, when
    /// there is no place under it).
    void zoom(double factor, double x, double y);

    /// Metres on the ground that one widget pixel covers at distance `range()`.
    double metersPerPixel() const;

    /// Column by column, as OpenGL takes them.
    std::array<double, 16> modelview() const;
    std::array<double, 16> projection() const;
    double nearPlane() const;
    double farPlane() const;

    /// Unit vectors of the view: to the right, upwards, and backwards (against the direction of sight).
    const halCore::Ecef& right() const { return right_; }
    const halCore::Ecef& up() const { return up_; }
    const halCore::Ecef& back() const { return back_; }
    /// Direction of the ray through a pixel, not normalised: its component along the sight is 1.
    halCore::Ecef ray(double x, double y) const;
    /// Tangent of half the field of view in either direction.
    double tanHalfHeight() const;
    double tanHalfWidth() const;

    friend bool operator==(const Camera&, const Camera&) = default;

  private:
    void update();
    bool bringNorthUp(const halCore::Vec3& grabbed, double x, double y);
    bool bringTurning(const halCore::Vec3& grabbed, double x, double y);

    halCore::Vec3 center_;
    double range_ = kWholeEarthRange;
    double azimuth_ = 0.0;
    double elevation_ = halCore::kHalfPi;
    int width_ = 1;
    int height_ = 1;

    halCore::Ecef eye_;
    halCore::Ecef right_;
    halCore::Ecef up_;
    halCore::Ecef back_;

  public:
    Camera() { update(); }
};

}  // namespace sandbox
