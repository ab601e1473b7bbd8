#include "globe/FillCost.h"

#include <algorithm>
#include <cmath>

#include "globe/Camera.h"

namespace sandbox {

using halCore::Ecef;

/// Device pixels from the middle of the view; at its edge for what is beside it.
struct FillCost::Place {
    double x;
    double y;
};

FillCost::FillCost(const Camera& camera, double pixelRatio)
    : view_(camera, {}),
      eye_(camera.eye()),
      ahead_(-camera.back()),
      width_(camera.width() * pixelRatio),
      height_(camera.height() * pixelRatio),
      pixelRatio_(pixelRatio) {
    right_ = camera.right() * (0.5 * width_ / camera.tanHalfWidth());
    up_ = camera.up() * (0.5 * height_ / camera.tanHalfHeight());
}

std::size_t FillCost::of(double pixels) {
    constexpr double kOfAUnit = 100.0;
    return 1 + static_cast<std::size_t>(pixels / kOfAUnit);
}

std::size_t FillCost::of(const BoundingBall& ball) const {
    if (!view_.mayShow(ball)) return 0;
    return of(view_.coverage(ball) * width_ * height_);
}

std::optional<FillCost::Place> FillCost::placeOf(const Ecef& position, double margin) const {
    const Ecef v = position - eye_;
    const double depth = dot(v, ahead_);
    if (!(depth > 0.0)) return std::nullopt;
    const double x = 0.5 * width_ + margin;
    const double y = 0.5 * height_ + margin;
    return Place{std::clamp(dot(v, right_) / depth, -x, x), std::clamp(dot(v, up_) / depth, -y, y)};
}

std::size_t FillCost::of(const DrawList::Line& line) const {
    constexpr std::size_t segmentsOfAUnit = 2;
    if (line.points.empty()) return 0;
    const double width = std::clamp(line.width, 1.0F, 255.0F) * pixelRatio_;
    const double right = 0.5 * (width_ + width);
    const double top = 0.5 * (height_ + width);
    double pixels = 0.0;
    const auto add = [&](const std::optional<Place>& a, const std::optional<Place>& b) {
        if (!a && !b) return;
        // What is seen of it is no longer than between the places next to its ends.
        const double x = a && b ? std::abs(a->x - b->x) : 2.0 * right;
        const double y = a && b ? std::abs(a->y - b->y) : 2.0 * top;
        const bool beside =
            a && b && ((x == 0.0 && std::abs(a->x) == right) || (y == 0.0 && std::abs(a->y) == top));
        const double length = std::sqrt(x * x + y * y);
        // The ends of short pieces meet those of their neighbours.
        if (!beside) pixels += (length + std::min(width, 2.0 * length + 2.0)) * width;
    };
    const auto place = [&](const Ecef& p) { return placeOf(p, 0.5 * width); };
    std::optional<Place> before = place(line.closed ? line.points.back() : line.points.front());
    for (const Ecef& p : line.points) {
        const std::optional<Place> here = place(p);
        add(before, here);
        before = here;
    }
    return line.points.size() / segmentsOfAUnit + of(pixels);
}

}  // namespace sandbox
