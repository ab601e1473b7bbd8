#pragma once

#include "geo/Ecef.h"

namespace sandbox {

class Camera;

/// A ball around something on or above the earth, with what every frame asks of it worked out once.
class BoundingBall {
  public:
    BoundingBall() = default;
    BoundingBall(const halCore::Ecef& center, double radius);

  private:
    friend class ViewVolume;
    halCore::Ecef center_;
    double radius_ = 0.0;
    double distance_ = 0.0;  ///< from the earth's centre
    /// How far beyond an eye's horizon, as an angle at the earth's centre, some of it can be seen.
    double cosReach_ = -1.0;
    double sinReach_ = 0.0;
};

/// The part of space that a view shows, or a rectangle of it.
class ViewVolume {
  public:
    /// In shares of the view's width and height, from the lower left corner.
    struct Part {
        double left = 0.0;
        double bottom = 0.0;
        double right = 1.0;
        double top = 1.0;
    };
    ViewVolume(const Camera& camera, const Part& part);

    /// False only for what is not to be seen: it is beside the volume, or the earth hides it, even one that
    /// is nowhere larger than at its poles.
    bool mayShow(const BoundingBall& ball) const;
    /// The share of its cross-section that a ball covers at most.
    double coverage(const BoundingBall& ball) const;

  private:
    /// Through the eye; what is seen is on the side of its normal, a unit vector.
    halCore::Ecef sides_[4];
    halCore::Ecef eye_;
    halCore::Ecef ahead_;
    double eyeDistance_;
    double cosHorizon_;
    double sinHorizon_;
};

}  // namespace sandbox
