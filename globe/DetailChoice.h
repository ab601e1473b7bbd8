#pragma once

#include <array>
#include <cstddef>

#include "globe/BoundingBox.h"

namespace sandbox {

class Camera;

/// Metres that each level of detail may be off, finest first; 0 = as good as it gets.
inline constexpr std::array<double, 8> kTolerances = {0.0, 2.0, 10.0, 50.0, 250.0, 1250.0, 6250.0, 31250.0};

/// Which level of detail, of kTolerances, a view cannot tell from the truth: what it lacks is smaller than a
/// fifth of a pixel.
class DetailChoice {
  public:
    /// `pixelRatio`: device pixels a widget pixel.
    DetailChoice(const Camera& camera, double pixelRatio);

    std::size_t of(const BoundingBox& bounds) const { return at(bounds.distanceFrom(eye_)); }
    /// For what lies nobody knows where.
    std::size_t usual() const { return usual_; }

  private:
    std::size_t at(double distance) const;

    halCore::Ecef eye_;
    double above_;
    double perMeter_;
    std::size_t usual_;
};

}  // namespace sandbox
