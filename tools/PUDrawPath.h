#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "geo/Ecef.h"

namespace PluginUtils {

/// A temporary line over many places, straight between them, with a white edge on both sides. What the earth
/// hides is left out.
class PUDrawPath {
  public:
    /// \param rgba red in the top byte, alpha in the lowest
    /// \param width without the edges, pixels of the mouse events
    PUDrawPath(std::vector<halCore::Ecef> places, std::uint32_t rgba, double width)
        : places_(std::move(places)), color_(rgba), width_(width) {}

    const std::vector<halCore::Ecef>& places() const { return places_; }
    std::uint32_t getColor() const { return color_; }
    double getWidth() const { return width_; }

  private:
    std::vector<halCore::Ecef> places_;
    std::uint32_t color_;
    double width_;
};

}  // namespace PluginUtils
