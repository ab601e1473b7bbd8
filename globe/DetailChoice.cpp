#include "globe/DetailChoice.h"

#include <algorithm>

#include "globe/Camera.h"

namespace sandbox {

namespace {

/// What a level may lack, in pixels.
constexpr double kSlack = 0.2;
/// What is out of view is to cost little.
constexpr std::size_t kCoarseEnough = 5;

}  // namespace

DetailChoice::DetailChoice(const Camera& camera, double pixelRatio)
    : eye_(camera.eye()),
      above_(std::max(10.0, 0.5 * std::min(camera.range(), camera.eyePosition().alt()))),
      perMeter_(2.0 * camera.tanHalfHeight() / (camera.height() * pixelRatio)),
      usual_(std::max(at(camera.range()), kCoarseEnough)) {}

std::size_t DetailChoice::at(double distance) const {
    const double pixel = std::max(above_, distance) * perMeter_;
    std::size_t level = kTolerances.size() - 1;
    while (level > 0 && kTolerances[level] > kSlack * pixel) --level;
    return level;
}

}  // namespace sandbox
