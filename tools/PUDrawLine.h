#pragma once

#include <cstdint>

#include "common/Vec3.h"

namespace PluginUtils {

/// A temporary line over the ground, the shortest way between two positions (radians, metres; the altitude
/// changes evenly on the way). What the earth hides is left out.
class PUDrawLine {
  public:
    /// \param rgba red in the top byte, alpha in the lowest
    /// \param width pixels of the mouse events
    PUDrawLine(const halCore::Vec3& from, const halCore::Vec3& to, std::uint32_t rgba, double width = 2.0)
        : from_(from), to_(to), color_(rgba), width_(width) {}

    void setPositions(const halCore::Vec3& from, const halCore::Vec3& to) {
        from_ = from;
        to_ = to;
    }
    const halCore::Vec3& from() const { return from_; }
    const halCore::Vec3& to() const { return to_; }
    void setColor(std::uint32_t rgba) { color_ = rgba; }
    std::uint32_t getColor() const { return color_; }
    void setWidth(double pixels) { width_ = pixels; }
    double getWidth() const { return width_; }

    void show() { shown_ = true; }
    void hide() { shown_ = false; }
    bool isShown() const { return shown_; }

  private:
    halCore::Vec3 from_;
    halCore::Vec3 to_;
    std::uint32_t color_;
    double width_;
    bool shown_ = false;
};

}  // namespace PluginUtils
