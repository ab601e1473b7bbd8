#pragma once

#include <QRect>
#include <vector>

namespace sandbox {

class Camera;

/// A view cut into rectangles of device pixels, rows from the bottom up: `earth`, where each pixel shows the
/// earth and nothing else, and `rim`, which is the rest. Together they are the view, and none overlap.
struct EarthDisc {
    std::vector<QRect> earth;
    std::vector<QRect> rim;

    EarthDisc(const Camera& camera, double pixelRatio);
};

}  // namespace sandbox
