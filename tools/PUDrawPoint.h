#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "geo/Ecef.h"
#include "tools/ViewProjection.h"

namespace PluginUtils {

/// The points of a shape that the user can grab.
inline constexpr std::uint32_t kEditPointColor = 0xFFFF00FF;
/// How near the cursor must come to grab a point, in pixels of the mouse events.
inline constexpr double kGrabRadius = 8.0;

/// Where a cursor is, to be compared with many points.
class GrabbingCursor {
  public:
    /// \param ground where the ray through the cursor's pixel meets the ground; its altitude is not used
    /// \param view must outlive the object
    GrabbingCursor(const halCore::Vec3& ground, const OverlayEditor::ViewProjection& view)
        : GrabbingCursor(ground, {ground.lat(), ground.lon(), 0.0}, view) {}
    /// A cursor over where a place is drawn, at its altitude.
    static GrabbingCursor over(const halCore::Vec3& place, const OverlayEditor::ViewProjection& view) {
        return {place, place, view};
    }

    const OverlayEditor::ViewProjection& view() const { return view_; }
    const std::optional<OverlayEditor::Pixel>& pixel() const { return pixel_; }
    /// Whether the pixel of what is drawn at `ecef` is near and the earth does not hide it. While no view is
    /// known, the latitude and longitude of the point itself must be the cursor's.
    bool grabs(const halCore::Vec3& lla, const halCore::Ecef& ecef) const;
    /// The same with the place on the ground beneath the point, from which it was placed, at whatever
    /// altitude.
    bool standsUnder(const halCore::Vec3& lla) const;

  private:
    GrabbingCursor(const halCore::Vec3& ground, const halCore::Vec3& aimed,
                   const OverlayEditor::ViewProjection& view);

    halCore::Vec3 ground_;
    const OverlayEditor::ViewProjection& view_;
    std::optional<OverlayEditor::Pixel> pixel_;
};

/// A point as a tool draws it: a position and how it looks in the view. It draws nothing itself; the painter
/// draws it in the host's refresh hook.
class PUDrawPoint {
  public:
    /// \param position latitude and longitude in radians, altitude in metres
    /// \param rgba red in the top byte, alpha in the lowest
    PUDrawPoint(const halCore::Vec3& position, std::uint32_t rgba)
        : position_(position), ecef_(halCore::toEcef(position)), color_(rgba) {}

    void setPosition(const halCore::Vec3& position) {
        if (position == position_) return;
        position_ = position;
        ecef_ = halCore::toEcef(position);
    }
    const halCore::Vec3& getPosition() const { return position_; }
    const halCore::Ecef& ecef() const { return ecef_; }
    double getAltitude() const { return position_.alt(); }

    /// Whether a cursor can grab the point; whether it is shown does not matter.
    bool canGrab(const GrabbingCursor& cursor) const { return cursor.grabs(position_, ecef_); }
    /// Whether a button that is released there is released on the point.
    bool isOn(const GrabbingCursor& cursor) const { return canGrab(cursor) || cursor.standsUnder(position_); }

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
    halCore::Ecef ecef_;
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
