#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "tools/ShapeMouseTool.h"

namespace OverlayEditor {

/// What the tools of shapes with a few edit points have in common. The shape knows where a point stands,
/// by its role; what is drawn of it and grabbed is the tool's.
class HandleMouseTool : public ShapeMouseTool {
  protected:
    /// One of the tool's own numbers for what a point is to the shape. 0 is none.
    using Role = int;

    /// \param roles the points that can be grabbed, the first wins
    HandleMouseTool(const Preferences& preferences, Shape& shape, const std::vector<Role>& roles);

    /// Where the shape has the point; nothing while it has none.
    virtual std::optional<halCore::Vec3> placeOf_(Role role) const = 0;
    /// A new point, an edit point like any other unless the tool makes it look different.
    virtual void dress_(PluginUtils::PUDrawPoint&, Role) const {}
    /// Whether the point is drawn while the tool shows its points.
    virtual bool isDrawn_(Role) const { return true; }
    /// Where the point is drawn and grabbed; nothing while it is not.
    virtual std::optional<halCore::Ecef> drawnAt_(const PluginUtils::PUDrawPoint& point, Role) const {
        return point.ecef();
    }

    PluginUtils::PUDrawPoint* pointNearMouse_(const halCore::Vec3& pos) override;
    void redrawPointsForViewChange_() override;
    void showEditPoints_(bool shown) override;
    void grab_(const PluginUtils::PUDrawPoint* point) override { grabbedRole_ = roleOf_(point); }
    void clearGrab_() override { grabbedRole_ = 0; }
    const Shape* edited_() const override { return &handled_; }
    bool hasPointAt_(const PluginUtils::GrabbingCursor& cursor) const override;
    /// The first of the points carries the shape to its altitude; the others lie at that of the shape.
    bool hasOwnAltitude_() const override {
        return state_ == Dragging ? grabbedRole_ == handles_.front().role : ShapeMouseTool::hasOwnAltitude_();
    }

    /// A release at that position is one on an edit point, and aborts.
    bool releasedOnPoint_(const halCore::Vec3& pos);
    /// Shows points that are new, and the values in the panel.
    void shapeChanged_();
    /// 0 for what is none of the points.
    Role roleOf_(const PluginUtils::PUDrawPoint* point) const;

    /// The point that is highlighted or dragged.
    Role grabbedRole_ = 0;

  private:
    struct Handle {
        Role role;
        /// Null while the shape lacks the point.
        std::unique_ptr<PluginUtils::PUDrawPoint> point;
    };
    /// The concrete tool's shape.
    Shape& handled_;
    std::vector<Handle> handles_;
};

}  // namespace OverlayEditor
