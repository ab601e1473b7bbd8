#pragma once

#include "common/Vec3.h"
#include "geo/Ecef.h"
#include "geo/SinCos.h"

namespace halCore {

/// A geodesic between two places at one altitude, to the first order in the flattening; in a tenth of the
/// time that the exact one takes.
///
/// Scaled so that the ellipsoid is the unit sphere, lengths are |du|² - e² dz². Geodesics are great circles
/// then but for an offset y to their side, with y'' + y = -e² k z, where z is that of the great circle and k
/// that of its normal. With y = 0 at both ends that has a closed solution. What is left out makes it
/// 0.4e-12 m^-1 times the square of the way at most.
class NearGeodesic {
  public:
    /// Metres; what follows is as good as it says up to here.
    static constexpr double kFarthest = 7e6;

    /// \param fromPlace,toPlace the same, earth-centred
    NearGeodesic(const Vec3& from, const Ecef& fromPlace, const Vec3& to, const Ecef& toPlace);

    /// Its length on the ellipsoid, to a hundred-thousandth.
    double meters() const;
    /// Goes to a share of the way, 0 to 1, and by how much of it next() goes on. Equal shares are equal ways
    /// to a two-thousandth.
    void start(double share, double step);
    void next();
    Vec3 point() const;
    Ecef place() const;

  private:
    Ecef here() const;

    double altitude_;
    Ecef from_;  ///< on the unit sphere, like the rest
    Ecef ahead_;
    Ecef aside_;
    double angle_;
    double bend_;
    double back_;  ///< the part of y that brings it to the end
    double at_ = 0.0;
    double step_ = 0.0;
    SinCos way_{0.0, 1.0};
    SinCos more_{0.0, 1.0};
};

}  // namespace halCore
