#include "tools/ViewProjection.h"

#include <algorithm>
#include <cmath>

namespace OverlayEditor {

using halCore::Ecef;

namespace {

/// What is nearer than this in front of the eye has no pixel.
constexpr double kNearestMeters = 1e-3;
/// Lines are cut this many views outside of the view.
constexpr double kMargin = 4.0;

/// Narrows [t0, t1] to where from + t * (to - from) >= 0. \return false when nothing is left
bool keepPositive(double from, double to, double& t0, double& t1) {
    if (from < 0.0 && to < 0.0) return false;
    if (from < 0.0) t0 = std::max(t0, from / (from - to));
    if (to < 0.0) t1 = std::min(t1, from / (from - to));
    return t0 <= t1;
}

}  // namespace

double distance(const Pixel& a, const Pixel& b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

ViewProjection::ViewProjection(const Ecef& eye, const std::array<double, 16>& modelview,
                               const std::array<double, 16>& projection, int width, int height,
                               double pixelScale)
    : eye_(eye), width_(width), height_(height), pixelScale_(pixelScale) {
    const auto row = [&](std::size_t r) {
        std::array<double, 4> result{};
        for (std::size_t column = 0; column < 4; ++column)
            for (std::size_t k = 0; k < 4; ++k)
                result[column] += projection[k * 4 + r] * modelview[column * 4 + k];
        return result;
    };
    rowX_ = row(0);
    rowY_ = row(1);
    rowW_ = row(3);
    verticalScale_ = std::hypot(rowY_[0], rowY_[1], rowY_[2]);
    const double depthScale = std::hypot(rowW_[0], rowW_[1], rowW_[2]);
    if (!(verticalScale_ > 0.0) || !(depthScale > 0.0)) width_ = height_ = 0;
}

ViewProjection::Clip ViewProjection::clip_(const Ecef& ecef) const {
    const Ecef relative = ecef - eye_;
    const auto apply = [&](const std::array<double, 4>& row) {
        return row[0] * relative.x + row[1] * relative.y + row[2] * relative.z + row[3];
    };
    return {apply(rowX_), apply(rowY_), apply(rowW_)};
}

Pixel ViewProjection::pixel_(const Clip& clip) const {
    return {(clip.x / clip.w + 1.0) * 0.5 * width_, (1.0 - clip.y / clip.w) * 0.5 * height_};
}

std::optional<Pixel> ViewProjection::pixel(const Ecef& ecef) const {
    if (!isValid()) return std::nullopt;
    const Clip clip = clip_(ecef);
    if (!(clip.w > kNearestMeters)) return std::nullopt;
    return pixel_(clip);
}

std::optional<Pixel> ViewProjection::visiblePixel(const Ecef& ecef) const {
    if (!isValid()) return std::nullopt;
    return isHiddenByEarth(ecef) ? std::nullopt : pixel(ecef);
}

std::optional<std::pair<Pixel, Pixel>> ViewProjection::segment(const Ecef& from, const Ecef& to) const {
    if (!isValid()) return std::nullopt;
    const Clip a = clip_(from);
    const Clip b = clip_(to);
    double t0 = 0.0;
    double t1 = 1.0;
    const bool left = keepPositive(a.w - kNearestMeters, b.w - kNearestMeters, t0, t1) &&
                      keepPositive(kMargin * a.w - a.x, kMargin * b.w - b.x, t0, t1) &&
                      keepPositive(kMargin * a.w + a.x, kMargin * b.w + b.x, t0, t1) &&
                      keepPositive(kMargin * a.w - a.y, kMargin * b.w - b.y, t0, t1) &&
                      keepPositive(kMargin * a.w + a.y, kMargin * b.w + b.y, t0, t1);
    if (!left) return std::nullopt;
    const auto at = [&](double t) {
        return Clip{std::lerp(a.x, b.x, t), std::lerp(a.y, b.y, t), std::lerp(a.w, b.w, t)};
    };
    return std::pair(pixel_(at(t0)), pixel_(at(t1)));
}

std::vector<std::pair<Pixel, Pixel>> ViewProjection::seen(std::span<const Ecef> path) const {
    constexpr double same = 0.5;
    std::vector<std::pair<Pixel, Pixel>> segments;
    /// From where the next segment leads; null where the earth hides it.
    const Ecef* from = nullptr;
    std::optional<Pixel> fromPixel;
    const Ecef* passed = nullptr;
    const auto leadTo = [&](const Ecef& to) {
        if (const auto pixels = segment(*from, to)) segments.push_back(*pixels);
        passed = nullptr;
    };
    for (const Ecef& place : path) {
        if (isHiddenByEarth(place)) {
            if (passed) leadTo(*passed);
            from = nullptr;
            continue;
        }
        const std::optional<Pixel> at = pixel(place);
        if (from && at && fromPixel && std::abs(at->x - fromPixel->x) < same &&
            std::abs(at->y - fromPixel->y) < same) {
            passed = &place;
            continue;
        }
        if (from) leadTo(place);
        from = &place;
        fromPixel = at;
        passed = nullptr;
    }
    if (passed) leadTo(*passed);
    return segments;
}

double ViewProjection::metersPerPixel(const Ecef& ecef) const {
    if (!isValid()) return 0.0;
    const Clip clip = clip_(ecef);
    if (!(clip.w > kNearestMeters)) return 0.0;
    return 2.0 * clip.w / (verticalScale_ * height_);
}

Ecef ViewProjection::raised(const Ecef& ecef, double pixels) const {
    const double meters = pixels * metersPerPixel(ecef);
    if (meters == 0.0) return ecef;
    const double step = meters / verticalScale_;
    return {ecef.x + step * rowY_[0], ecef.y + step * rowY_[1], ecef.z + step * rowY_[2]};
}

}  // namespace OverlayEditor
