#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "geo/Ecef.h"
#include "globe/ViewVolume.h"

namespace sandbox {

/// A box around everything that was added, along the earth-centred axes, in metres; to leave out what is not
/// in the view.
class BoundingBox {
  public:
    void add(const halCore::Ecef& p) {
        low_ = {std::min(low_.x, p.x), std::min(low_.y, p.y), std::min(low_.z, p.z)};
        high_ = {std::max(high_.x, p.x), std::max(high_.y, p.y), std::max(high_.z, p.z)};
    }
    void grow(double meters) {
        low_ = low_ - halCore::Ecef{meters, meters, meters};
        high_ = high_ + halCore::Ecef{meters, meters, meters};
    }
    /// 0 within the box.
    double distanceFrom(const halCore::Ecef& p) const {
        return length(halCore::Ecef{std::max({low_.x - p.x, 0.0, p.x - high_.x}),
                                    std::max({low_.y - p.y, 0.0, p.y - high_.y}),
                                    std::max({low_.z - p.z, 0.0, p.z - high_.z})});
    }
    halCore::Ecef middle() const { return (low_ + high_) * 0.5; }
    double diagonal() const { return length(high_ - low_); }
    std::array<halCore::Ecef, 8> corners() const {
        std::array<halCore::Ecef, 8> all{};
        for (unsigned i = 0; i < all.size(); ++i)
            all[i] = {i & 1U ? low_.x : high_.x, i & 2U ? low_.y : high_.y, i & 4U ? low_.z : high_.z};
        return all;
    }
    BoundingBall ball() const { return {middle(), diagonal() * 0.5}; }

    /// Whether two boxes, each with a margin, may lie before each other as seen by an eye.
    bool meets(const BoundingBox& other, const halCore::Ecef& eye, double marginRadians) const {
        const halCore::Ecef v = middle() - eye;
        const halCore::Ecef w = other.middle() - eye;
        const double near = diagonal() * 0.5;
        const double far = other.diagonal() * 0.5;
        if (length(v) <= near || length(w) <= far) return true;
        const double between = std::atan2(length(cross(v, w)), dot(v, w));
        return between < std::asin(near / length(v)) + std::asin(far / length(w)) + marginRadians;
    }

  private:
    static constexpr double kHuge = std::numeric_limits<double>::max();
    halCore::Ecef low_{kHuge, kHuge, kHuge};
    halCore::Ecef high_{-kHuge, -kHuge, -kHuge};
};

}  // namespace sandbox
