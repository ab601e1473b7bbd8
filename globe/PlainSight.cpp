#include "globe/PlainSight.h"

#include <algorithm>
#include <cmath>

#include "geo/Ecef.h"

namespace sandbox {

using halCore::Ecef;

/// Where the earth is the unit sphere, a place p is on this side if p·p - p·e < 0 for the eye e: on the
/// ground that is the distance times the cosine at which the ray of sight meets it. The seam at the horizon
/// is as wide as that changes over a pixel, by e times the pixel's angle at most, once more over the cosine.
/// With a bound for the cosine both sides are convex in p, and greatest at a corner.
bool isInPlainSight(const BoundingBox& box, const Camera& camera, double pixelRatio) {
    const Ecef eye = toUnitSphere(camera.eye());
    const double pixel = 2.0 * camera.tanHalfHeight() / (camera.height() * pixelRatio);
    const double cosine = std::max(0.2, 2.0 * std::sqrt(length(eye) * pixel));
    return std::ranges::all_of(box.corners(), [&](const Ecef& corner) {
        const Ecef p = toUnitSphere(corner);
        return dot(p, p) - dot(p, eye) + cosine * length(p - eye) < 0.0;
    });
}

}  // namespace sandbox
