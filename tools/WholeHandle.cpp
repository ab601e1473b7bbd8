#include "tools/WholeHandle.h"

#include <cmath>

#include "geo/Angles.h"
#include "geo/Sodano.h"

namespace OverlayEditor {

using halCore::Vec3;

WholeHandle::WholeHandle(Shape& shape) : shape_(shape) {}

void WholeHandle::follow(bool shown) {
    const std::uint64_t revision = shape_.placed().revision();
    // While the shape is held it follows the handle, unless its platform carries both.
    const bool stands = known_ && revision_ == revision && (held_ || changes_ == shape_.changes());
    if (shown && !stands) {
        const auto middle = shapeMiddle_.of(shape_);
        hasMiddle_ = middle.has_value();
        if (middle) point_.setPosition(*middle);
        known_ = true;
        changes_ = shape_.changes();
        revision_ = revision;
    }
    if (shown && hasMiddle_)
        point_.show();
    else
        point_.hide();
    point_.setDrawAltimeter(!beside_);
}

void WholeHandle::take() {
    held_ = std::make_unique<WholeShape>(shape_);
    turned_ = 0.0;
    lies_ = true;
    zero_.reset();
}

void WholeHandle::letGo() {
    held_.reset();
    known_ = false;
}

void WholeHandle::moveTo(const Vec3& middle) {
    lay_(middle, turned_);
}

void WholeHandle::turnTo(const Vec3& cursor, bool isNear, bool steps) {
    if (isNear) return;
    constexpr double step = 15.0 * halCore::kRadiansPerDegree;
    const double direction = halCore::Sodano::inverse(point_.getPosition(), cursor).azimuth1;
    if (!zero_) zero_ = direction - turned_;
    const double turn = halCore::wrapToPi(direction - *zero_);
    lay_(point_.getPosition(), steps ? std::round(turn / step) * step : turn);
}

void WholeHandle::lay_(const Vec3& middle, double turnRad) {
    lies_ = held_->lay(middle, turnRad);
    if (!lies_) return;
    turned_ = turnRad;
    point_.setPosition(middle);
}

}  // namespace OverlayEditor
