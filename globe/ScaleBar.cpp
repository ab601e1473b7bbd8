#include "globe/ScaleBar.h"

#include <cmath>

#include "common/NumberText.h"
#include "geo/GeodesicPath.h"
#include "globe/Camera.h"

namespace sandbox {

ScaleBar scaleBar(const Camera& camera, double mostPixels) {
    // Across the middle of the view, on the ground where there is some.
    constexpr double kProbe = 10.0;
    const double x = camera.width() / 2.0;
    const double y = camera.height() / 2.0;
    double metersPerPixel = camera.metersPerPixel();
    const auto left = camera.pick(x - kProbe, y);
    const auto right = camera.pick(x + kProbe, y);
    if (left && right) metersPerPixel = geodesicBetween(*left, *right).meters / (2.0 * kProbe);
    const double most = metersPerPixel * mostPixels;
    const double power = std::pow(10.0, std::floor(std::log10(most)));
    const double lead = most / power;
    ScaleBar bar;
    bar.meters = power * (lead >= 5.0 ? 5.0 : lead >= 2.0 ? 2.0 : 1.0);
    bar.pixels = bar.meters / metersPerPixel;
    const bool kilometers = bar.meters >= 1000.0;
    bar.text = UTILS::writeNumber(bar.meters / (kilometers ? 1000.0 : 1.0)).append(kilometers ? " km" : " m");
    return bar;
}

}  // namespace sandbox
