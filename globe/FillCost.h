#pragma once

#include <cstddef>
#include <optional>

#include "geo/Ecef.h"
#include "globe/DrawList.h"
#include "globe/ViewVolume.h"

namespace sandbox {

class Camera;

/// What it costs a processor that plays the graphics card to draw something in a view: rough figures, and
/// rather too high, in units of about a microsecond.
class FillCost {
  public:
    /// So much is drawn before anybody asks whether others wait.
    static constexpr std::size_t kAtOnce = 3000;

    /// `pixelRatio`: device pixels a widget pixel.
    FillCost(const Camera& camera, double pixelRatio);

    /// Of all pixels.
    std::size_t ofView() const { return of(width_ * height_); }
    /// Of an area, a body or a picture within a ball; 0 when it is not to be seen.
    std::size_t of(const BoundingBall& ball) const;
    std::size_t of(const DrawList::Line& line) const;

  private:
    static std::size_t of(double pixels);
    struct Place;
    std::optional<Place> placeOf(const halCore::Ecef& position, double margin) const;

    ViewVolume view_;
    halCore::Ecef eye_;
    halCore::Ecef ahead_;
    // Device pixels, at depth 1.
    halCore::Ecef right_;
    halCore::Ecef up_;
    double width_;
    double height_;
    double pixelRatio_;
};

}  // namespace sandbox
