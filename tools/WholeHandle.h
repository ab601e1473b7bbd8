#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "model/ShapeMiddle.h"
#include "model/WholeShape.h"
#include "tools/PUDrawPoint.h"

namespace OverlayEditor {

/// The point at a shape's middle by which all of it is moved and turned.
///
/// Where an edit point stands there, as a circle's centre does, the handle is drawn below it, so that both
/// can be reached.
class WholeHandle {
  public:
    /// \param shape must outlive the object
    explicit WholeHandle(Shape& shape);

    PluginUtils::PUDrawPoint& point() { return point_; }
    const PluginUtils::PUDrawPoint& point() const { return point_; }
    bool isShown() const { return point_.isShown(); }
    /// Stands at the shape's middle, wherever that is by now; hidden without one.
    void follow(bool shown);
    /// Where it is drawn and grabbed.
    /// \param isTaken whether an edit point is drawn where that cursor is
    template <typename IsTaken>
    halCore::Ecef drawnAt(const ViewProjection& view, IsTaken&& isTaken) {
        if (!held_) beside_ = isTaken(PluginUtils::GrabbingCursor::over(point_.getPosition(), view));
        return beside_ ? view.raised(point_.ecef(), -kApart * view.pixelScale()) : point_.ecef();
    }

    /// From here on the shape lies where the handle is put, until it is let go.
    void take();
    void letGo();
    bool isHeld() const { return held_ != nullptr; }
    /// Where the handle was taken; needs to be held.
    const halCore::Vec3& takenAt() const { return held_->middle(); }
    bool canTurn() const { return WholeShape::canTurn(shape_); }
    /// Radians clockwise since it was taken.
    double turned() const { return turned_; }
    /// Whether the shape lies where it was to be put last.
    bool lies() const { return lies_; }

    void moveTo(const halCore::Vec3& middle);
    /// From here on the shape turns with the direction from its middle to the cursor.
    void beginTurn() { zero_.reset(); }
    /// \param cursor on the ground; near the middle it has no direction \param steps of 15 degrees
    void turnTo(const halCore::Vec3& cursor, bool isNear, bool steps);

  private:
    static constexpr std::uint32_t kColor = 0x30E060FF;
    /// How far below an edit point it stands, pixels of the mouse events.
    static constexpr double kApart = 28.0;

    void lay_(const halCore::Vec3& middle, double turnRad);

    Shape& shape_;
    ShapeMiddle shapeMiddle_;
    PluginUtils::PUDrawPoint point_{{}, kColor};
    bool beside_ = false;
    /// Of the shape, when its middle was looked for last.
    std::uint64_t changes_ = 0;
    std::uint64_t revision_ = 0;
    bool known_ = false;
    bool hasMiddle_ = false;
    std::unique_ptr<WholeShape> held_;
    double turned_ = 0.0;
    bool lies_ = true;
    /// The direction of the cursor that means no turn.
    std::optional<double> zero_;
};

}  // namespace OverlayEditor
