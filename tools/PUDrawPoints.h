#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "tools/PUDrawPoint.h"
#include "tools/SnapGrid.h"

namespace PluginUtils {

/// The drawn points of a shape that has many. The address of a point holds until it is removed.
class PUDrawPoints {
  public:
    explicit PUDrawPoints(std::uint32_t rgba) : color_(rgba) {}

    /// Makes the points be at these positions, one each, as many as there are.
    void setPositions(std::span<const halCore::Vec3> positions);
    /// The same with one of them: its position is set in no other way.
    void setPosition(std::size_t index, const halCore::Vec3& position);
    std::size_t size() const { return points_.size(); }
    PUDrawPoint& point(std::size_t index) { return *points_[index]; }
    const PUDrawPoint& point(std::size_t index) const { return *points_[index]; }

    /// The first point that the cursor can grab.
    std::optional<std::size_t> grabbedBy(const GrabbingCursor& cursor) const;
    /// The first point on which a button is released there.
    std::optional<std::size_t> under(const GrabbingCursor& cursor) const;
    /// The index of one of these points, none for any other.
    std::optional<std::size_t> indexOf(const PUDrawPoint* point) const;

    void show();
    void hide();
    bool isShown() const { return shown_; }

  private:
    std::uint32_t color_;
    bool shown_ = false;
    std::vector<std::unique_ptr<PUDrawPoint>> points_;
    /// Where they lie in a view; none after many of them have moved.
    mutable std::optional<OverlayEditor::ViewProjection> gridView_;
    mutable OverlayEditor::SnapGrid grid_;
};

}  // namespace PluginUtils
