#pragma once

#include <array>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "geo/Ecef.h"

namespace OverlayEditor {

/// A place in the view: device pixels from the left and the top edge, fractions allowed.
struct Pixel {
    double x = 0.0;
    double y = 0.0;

    friend bool operator==(const Pixel&, const Pixel&) = default;
};

double distance(const Pixel& a, const Pixel& b);

/// Where positions appear in one frame of the view. All in double precision, relative to the eye, so that
/// it holds from 100 m to 20,000 km of range.
class ViewProjection {
  public:
    /// Knows no view: nothing has a pixel.
    ViewProjection() = default;

    /// \param modelview, projection column by column, as OpenGL keeps them; they map metres relative to eye
    /// \param width, height the view in device pixels
    /// \param pixelScale device pixels per pixel of the mouse events
    ViewProjection(const halCore::Ecef& eye, const std::array<double, 16>& modelview,
                   const std::array<double, 16>& projection, int width, int height, double pixelScale = 1.0);

    friend bool operator==(const ViewProjection&, const ViewProjection&) = default;

    bool isValid() const { return width_ > 0 && height_ > 0; }
    int width() const { return width_; }
    int height() const { return height_; }
    double pixelScale() const { return pixelScale_; }

    /// Whether the earth stands between the eye and a position.
    bool isHiddenByEarth(const halCore::Ecef& ecef) const { return halCore::isHiddenByEarth(eye_, ecef); }

    /// The pixel, which may lie outside of the view; none for what is not in front of the eye. The earth
    /// does not matter.
    std::optional<Pixel> pixel(const halCore::Ecef& ecef) const;

    /// The pixel of what can be seen; what lies a little below the ground shines through it.
    std::optional<Pixel> visiblePixel(const halCore::Ecef& ecef) const;

    /// The part of a straight line that is in front of the eye and not far outside of the view.
    std::optional<std::pair<Pixel, Pixel>> segment(const halCore::Ecef& from, const halCore::Ecef& to) const;

    /// The parts of a path of straight lines that can be seen, as many as can be told apart: places within
    /// half a pixel of the last one are passed over, but for the path's end and what the earth hides from
    /// there on.
    std::vector<std::pair<Pixel, Pixel>> seen(std::span<const halCore::Ecef> path) const;

    /// Metres that one device pixel spans at a position across the line of sight; 0 when it has no pixel.
    double metersPerPixel(const halCore::Ecef& ecef) const;

    /// The position that many device pixels above this one on the screen, as far away.
    halCore::Ecef raised(const halCore::Ecef& ecef, double pixels) const;

  private:
    struct Clip {
        double x, y, w;
    };

    Clip clip_(const halCore::Ecef& ecef) const;
    Pixel pixel_(const Clip& clip) const;

    halCore::Ecef eye_;
    /// Rows x, y and w of projection times modelview.
    std::array<double, 4> rowX_{}, rowY_{}, rowW_{};
    double verticalScale_ = 0.0;
    int width_ = 0;
    int height_ = 0;
    double pixelScale_ = 1.0;
};

}  // namespace OverlayEditor
