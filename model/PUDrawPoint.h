#pragma once

#include <cstdint>
#include <string>

#include "common/Vec3.h"

namespace PluginUtils {

/// The points of a shape that the user can grab.
inline constexpr std::uint32_t kEditPointColor = 0xFFFF00FF;

/// An edit point: a position and how it looks in the view. It draws nothing itself; the painter of the
/// mouse tools draws it in the host's refresh hook, and decides in pixels whether a cursor can grab it.
class PUDrawPoint {
  public:
    /// \param position latitude and longitude in radians, altitude in metres
    /// \param rgba red in the top byte, alpha in the lowest
    PUDrawPoint(const halCore::Vec3& position, std::uint32_t rgba) : position_(position), color_(rgba) {}

    void setPosition(const halCore::Vec3& position) { position_ = position; }
    const halCore::Vec3& getPosition() const { return position_; }
    double getAltitude() const { return position_.alt(); }

    /// The label beside the point; empty for none.
    void setDescription(std::string text) { description_ = std::move(text); }
    const std::string& getDescription() const { return description_; }
    void setHighlighted(bool highlighted) { highlighted_ = highlighted; }
    bool isHighlighted() const { return highlighted_; }
    void setColor(std::uint32_t rgba) { color_ = rgba; }
    std::uint32_t getColor() const { return color_; }
    /// Without the depth test a point is drawn even where something else is nearer.
    void setEnableDepthBuffer(bool enabled) { depthBuffer_ = enabled; }
    bool isDepthBufferEnabled() const { return depthBuffer_; }
    /// The line from the point down to the ground.
    void setDrawAltimeter(bool drawn) { altimeter_ = drawn; }
    bool drawsAltimeter() const { return altimeter_; }
    /// A hollow point is a ring, so that what stands at its place can be read.
    void setHollow(bool hollow) { hollow_ = hollow; }
    bool isHollow() const { return hollow_; }
    void setDrawTextAbove(bool above) { textAbove_ = above; }
    bool drawsTextAbove() const { return textAbove_; }

    void show() { shown_ = true; }
    void hide() { shown_ = false; }
    bool isShown() const { return shown_; }

  private:
    halCore::Vec3 position_;
    std::uint32_t color_;
    std::string description_;
    bool highlighted_ = false;
    bool depthBuffer_ = false;
    bool altimeter_ = true;
    bool hollow_ = false;
    bool textAbove_ = false;
    bool shown_ = false;
};

}  // namespace PluginUtils
