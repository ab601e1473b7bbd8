#include "globe/DepthMap.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "geo/Ecef.h"

namespace sandbox {

using halCore::Ecef;

DepthMap::DepthMap(const Camera& camera)
    : camera_(camera),
      nearness_(static_cast<std::size_t>(camera.width()) * static_cast<std::size_t>(camera.height())) {}

DepthMap::Corner DepthMap::corner(const Ecef& position) const {
    const double depth = -dot(position - camera_.eye(), camera_.back());
    const Projected place = camera_.project(position);
    return {place.x, place.y, depth > 0.0 ? 1.0 / depth : 0.0};
}

void DepthMap::add(const DrawList::Mesh& body) {
    empty_ = false;
    for (std::size_t i = 0; i + 2 < body.triangles.size(); i += 3)
        add(corner(body.vertices[body.triangles[i]]), corner(body.vertices[body.triangles[i + 1]]),
            corner(body.vertices[body.triangles[i + 2]]));
}

void DepthMap::add(const Corner& a, const Corner& b, const Corner& c) {
    if (a.nearness <= 0.0 || b.nearness <= 0.0 || c.nearness <= 0.0) return;
    const double area = (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
    if (area == 0.0) return;
    const auto bound = [](double v, int most) {
        return static_cast<int>(std::clamp(v, 0.0, static_cast<double>(most) - 1.0));
    };
    const int left = bound(std::min({a.x, b.x, c.x}), camera_.width());
    const int right = bound(std::max({a.x, b.x, c.x}) + 1.0, camera_.width());
    const int top = bound(std::min({a.y, b.y, c.y}), camera_.height());
    const int bottom = bound(std::max({a.y, b.y, c.y}) + 1.0, camera_.height());
    for (int y = top; y <= bottom; ++y) {
        for (int x = left; x <= right; ++x) {
            const double px = x + 0.5;
            const double py = y + 0.5;
            const double wa = ((b.x - px) * (c.y - py) - (c.x - px) * (b.y - py)) / area;
            const double wb = ((c.x - px) * (a.y - py) - (a.x - px) * (c.y - py)) / area;
            const double wc = 1.0 - wa - wb;
            if (wa < 0.0 || wb < 0.0 || wc < 0.0) continue;
            float& best = nearness_[static_cast<std::size_t>(y) * static_cast<std::size_t>(camera_.width()) +
                                    static_cast<std::size_t>(x)];
            best = std::max(best, static_cast<float>(wa * a.nearness + wb * b.nearness + wc * c.nearness));
        }
    }
}

bool DepthMap::hides(const Ecef& position) const {
    if (empty_) return false;
    const Corner at = corner(position);
    if (at.nearness <= 0.0 || at.x < 0.0 || at.y < 0.0 || at.x >= camera_.width() || at.y >= camera_.height())
        return false;
    // What lies on a body is not hidden by it: its own pixels may be nearer by the slope of its face. All
    // four sides must hide it.
    constexpr double kSlack = 1.002;
    const auto column = static_cast<int>(at.x);
    const auto row = static_cast<int>(at.y);
    for (const auto& [dx, dy] :
         {std::pair{0, 0}, std::pair{1, 0}, std::pair{-1, 0}, std::pair{0, 1}, std::pair{0, -1}}) {
        const int x = std::clamp(column + dx, 0, camera_.width() - 1);
        const int y = std::clamp(row + dy, 0, camera_.height() - 1);
        const double there =
            double{nearness_[static_cast<std::size_t>(y) * static_cast<std::size_t>(camera_.width()) +
                             static_cast<std::size_t>(x)]};
        if (there <= at.nearness * kSlack) return false;
    }
    return true;
}

}  // namespace sandbox
