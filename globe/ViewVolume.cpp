#include "globe/ViewVolume.h"

#include <algorithm>
#include <cmath>

#include "geo/Wgs84.h"
#include "globe/Camera.h"

namespace sandbox {

using halCore::Ecef;
namespace wgs84 = halCore::wgs84;

BoundingBall::BoundingBall(const Ecef& center, double radius)
    : center_(center), radius_(radius), distance_(length(center)) {
    // One about the earth's centre is never beyond the horizon.
    if (!(distance_ > radius_)) return;
    const double highest = std::acos(wgs84::b / std::max(distance_ + radius_, wgs84::b));
    const double reach = std::asin(radius_ / distance_) + highest;
    cosReach_ = std::cos(reach);
    sinReach_ = std::sin(reach);
}

ViewVolume::ViewVolume(const Camera& camera, const Part& part)
    : eye_(camera.eye()),
      ahead_(-camera.back()),
      eyeDistance_(std::max(length(camera.eye()), wgs84::b)),
      cosHorizon_(wgs84::b / eyeDistance_),
      sinHorizon_(std::sqrt(std::max(0.0, 1.0 - cosHorizon_ * cosHorizon_))) {
    const auto side = [&](const Ecef& outwards, double share, double tangent) {
        const double slope = (2.0 * share - 1.0) * tangent;
        return normalized(outwards - ahead_ * slope);
    };
    sides_[0] = side(camera.right(), part.left, camera.tanHalfWidth());
    sides_[1] = -side(camera.right(), part.right, camera.tanHalfWidth());
    sides_[2] = side(camera.up(), part.bottom, camera.tanHalfHeight());
    sides_[3] = -side(camera.up(), part.top, camera.tanHalfHeight());
}

bool ViewVolume::mayShow(const BoundingBall& ball) const {
    // Beyond the horizon when the angle to its middle is larger than that to the horizon and its own reach,
    // and these are less than half a turn.
    const double cosBoth = cosHorizon_ * ball.cosReach_ - sinHorizon_ * ball.sinReach_;
    const double sinBoth = sinHorizon_ * ball.cosReach_ + cosHorizon_ * ball.sinReach_;
    if (sinBoth > 0.0 && dot(eye_, ball.center_) < cosBoth * eyeDistance_ * ball.distance_) return false;
    const Ecef v = ball.center_ - eye_;
    if (dot(v, ahead_) < -ball.radius_) return false;
    return std::ranges::none_of(sides_, [&](const Ecef& side) { return dot(v, side) < -ball.radius_; });
}

double ViewVolume::coverage(const BoundingBall& ball) const {
    const Ecef v = ball.center_ - eye_;
    const auto share = [&](const Ecef& side, const Ecef& opposite) {
        const double here = dot(v, side);
        const double there = dot(v, opposite);
        const double across = here + there;
        if (!(across > ball.radius_)) return 1.0;
        const double covered = std::min({2.0 * ball.radius_, ball.radius_ + here, ball.radius_ + there});
        return std::clamp(covered / across, 0.0, 1.0);
    };
    return share(sides_[0], sides_[1]) * share(sides_[2], sides_[3]);
}

}  // namespace sandbox
