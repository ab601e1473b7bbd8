#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "model/PUDrawPoint.h"
#include "tools/ViewProjection.h"

namespace PluginUtils {

/// How near the cursor must come to grab a point, in pixels of the mouse events.
inline constexpr double kGrabRadius = 8.0;

/// Whether a cursor can grab the point: their pixels are near each other and the earth does not hide the
/// point. Whether the point is shown does not matter. While no view is known, the point's own latitude
/// and longitude grab it.
/// \param cursor where the ray through the cursor's pixel meets the ground; its altitude is not used
bool canGrab(const PUDrawPoint& point, const halCore::Vec3& cursor,
             const OverlayEditor::ViewProjection& view);

/// The drawn points of a shape that has many. The address of a point holds until it is removed.
class PUDrawPoints {
  public:
    explicit PUDrawPoints(std::uint32_t rgba) : color_(rgba) {}

    /// Makes the points be at these positions, one each, as many as there are.
    void setPositions(std::span<const halCore::Vec3> positions);
    std::size_t size() const { return points_.size(); }
    PUDrawPoint& point(std::size_t index) { return points_[index]->point; }
    const PUDrawPoint& point(std::size_t index) const { return points_[index]->point; }
    /// The point's place, earth-centred metres.
    const halCore::Vec3& ecef(std::size_t index) const;

    /// The first point that the cursor can grab. \see canGrab
    std::optional<std::size_t> grabbedBy(const halCore::Vec3& cursor,
                                         const OverlayEditor::ViewProjection& view) const;
    /// The index of one of these points, none for any other.
    std::optional<std::size_t> indexOf(const PUDrawPoint* point) const;

    void show();
    void hide();
    bool isShown() const { return shown_; }

  private:
    struct Entry {
        PUDrawPoint point;
        halCore::Vec3 ecefOf;
        halCore::Vec3 ecef;
    };

    std::uint32_t color_;
    bool shown_ = false;
    std::vector<std::unique_ptr<Entry>> points_;
};

}  // namespace PluginUtils
