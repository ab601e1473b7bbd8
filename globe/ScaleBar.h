#pragma once

#include <string>

namespace sandbox {

class Camera;

/// A round length, 1, 2 or 5 with zeros, and how long it is in the middle of the view.
struct ScaleBar {
    static constexpr double kMostPixels = 160.0;
    static constexpr double kMargin = 16.0;  ///< from the lower right corner of the view

    double meters = 0.0;
    double pixels = 0.0;  ///< widget pixels; half of what is wanted at least
    std::string text;     ///< "500 m", "20 km"
};

/// At most `mostPixels` long.
ScaleBar scaleBar(const Camera& camera, double mostPixels);

}  // namespace sandbox
