#pragma once

#include <initializer_list>
#include <memory>

#include "model/CylinderShape.h"
#include "tools/HandleMouseTool.h"

namespace OverlayEditor {

/// What the tools of the circular shapes have in common: their edit points, and the handle for the height
/// of the kinds that have one.
///
/// The height handle stands at the shape's top, above its centre. While that is close to the centre on
/// the screen the handle is drawn beside it, so that both can be reached: the wheel over the
/// centre lifts the shape, the wheel over the handle changes the height; dragging either moves the shape.
class CylinderMouseTool : public HandleMouseTool {
  public:
    enum Grabbed {
        None = 0,
        Center = 1,
        MajorAxis = 2,
        MinorAxis = 3,
        StartAngle = 4,
        EndAngle = 5,
        Height = 6
    };

    Grabbed grabbed() const { return static_cast<Grabbed>(grabbedRole_); }

  protected:
    /// \param order the points that can be grabbed, the first wins; behind them comes the height handle
    CylinderMouseTool(const Preferences& preferences, CylinderShape& shape,
                      std::initializer_list<Role> order);

    std::optional<halCore::Vec3> placeOf_(Role role) const override;
    void dress_(PluginUtils::PUDrawPoint& point, Role role) const override;
    bool isDrawn_(Role role) const override;
    std::optional<halCore::Ecef> drawnAt_(const PluginUtils::PUDrawPoint& point, Role role) const override;
    bool isComplete_() const override { return shape_.isComplete(); }
    void showEditPoints_(bool shown) override;
    std::unique_ptr<BaseLineShape> makeRubberBand_() const override;
    bool shapeRubberBand_(BaseLineShape& rubberBand, const halCore::Vec3& pos) override;
    void moveGrabbed_(const halCore::Vec3& pos) override;
    std::string_view completeHint_() const override;
    std::string_view hoveringHint_() const override;
    std::optional<double> placedAltitude_() const override;
    /// The centre, for a point on the rim.
    std::optional<halCore::Vec3> pivot_() const override;
    /// On the height handle it is the height that grows, and it begins at a size of the shape's own.
    double turnedAltitude_(int delta) const override;

    /// Moves the grabbed point, which is any but the height handle.
    virtual void movePoint_(Grabbed grabbed, const halCore::Vec3& pos) = 0;
    /// Gives the rubber band, which has the shape's centre, its radii and angles for a cursor.
    virtual void spanRubberBand_(CylinderShape& rubberBand, const halCore::Vec3& pos) const = 0;

    /// Brings the whole shape to an altitude.
    void lift_(double altitude);
    /// Removes the shape's geometry.
    void resetShape_();
    /// The shape is drawn: no more placing.
    void complete_();
    halCore::Vec3 center_() const { return *shape_.centerPt(); }
    /// Metres and radians from the centre; need one.
    /// Whether a place has the cursor's pixel: what is dragged there is dragged onto it.
    bool isOn_(const halCore::Vec3& pos, const halCore::Vec3& place) const;
    double radiusAt_(const halCore::Vec3& pos) const;
    double bearingAt_(const halCore::Vec3& pos) const;

    /// The host may end in its deletion whenever it changes: the tool is then not active any more.
    CylinderShape& shape_;

  private:
    bool hasHeight_() const;
    /// Turned clockwise about the centre; needs one.
    halCore::Vec3 headed_(const halCore::Vec3& place, double radians) const;
    /// Above the centre; needs one.
    halCore::Vec3 top_() const;
    void moveTop_(const halCore::Vec3& pos);
};

}  // namespace OverlayEditor
