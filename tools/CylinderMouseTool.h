#pragma once

#include <memory>
#include <span>

#include "model/CylinderShape.h"
#include "tools/ShapeMouseTool.h"

namespace OverlayEditor {

/// What the tools of the circular shapes have in common: their edit points, and the handle for the height
/// of the kinds that have one.
///
/// The height handle stands at the shape's top, above its centre. While that is close to the centre on
/// the screen the handle is drawn beside it, so that both can be reached: the wheel over the
/// centre lifts the shape, the wheel over the handle changes the height; dragging either moves the shape.
class CylinderMouseTool : public ShapeMouseTool {
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

    Grabbed grabbed() const { return grabbed_; }

  protected:
    /// \param order the points that can be grabbed, the first wins; must outlive the tool
    CylinderMouseTool(const Preferences& preferences, CylinderShape& shape, std::span<const Grabbed> order);

    PluginUtils::PUDrawPoint* pointNearMouse_(const halCore::Vec3& pos) override;
    void redrawPointsForViewChange_() override;
    bool hasPoint_(const PluginUtils::PUDrawPoint* point) const override;
    bool isComplete_() const override { return shape_.isComplete(); }
    void showEditPoints_(bool shown) override;
    std::unique_ptr<BaseLineShape> makeRubberBand_() const override;
    bool shapeRubberBand_(BaseLineShape& rubberBand, const halCore::Vec3& pos) override;
    void grab_(const PluginUtils::PUDrawPoint* point) override { grabbed_ = whichPoint_(point); }
    void clearGrab_() override { grabbed_ = None; }
    void moveGrabbed_(const halCore::Vec3& pos) override;
    std::string_view completeHint_() const override;
    std::string_view hoveringHint_() const override;

    /// Moves the grabbed point, which is any but the height handle.
    virtual void movePoint_(Grabbed grabbed, const halCore::Vec3& pos) = 0;
    /// Gives the rubber band, which has the shape's centre, its radii and angles for a cursor.
    virtual void spanRubberBand_(CylinderShape& rubberBand, const halCore::Vec3& pos) const = 0;

    /// A release at that position is one on an edit point, and aborts.
    bool releasedOnPoint_(const halCore::Vec3& pos);
    /// Brings the whole shape to an altitude.
    void lift_(double altitude);
    /// Removes the shape's geometry.
    void resetShape_();
    /// Shows points that are new, and the values in the panel.
    void shapeChanged_();
    /// The shape is drawn: no more placing.
    void complete_();
    halCore::Vec3 center_() const { return shape_.centerPt()->getPosition(); }
    /// Metres and radians from the centre; need one.
    double radiusAt_(const halCore::Vec3& pos) const;
    double bearingAt_(const halCore::Vec3& pos) const;

    /// The host may end in its deletion whenever it changes: the tool is then not active any more.
    CylinderShape& shape_;
    Grabbed grabbed_ = None;

  private:
    PluginUtils::PUDrawPoint* pointOf_(Grabbed which) const;
    Grabbed whichPoint_(const PluginUtils::PUDrawPoint* point) const;
    bool hasHeight_() const;
    void updateHeightHandle_();
    halCore::Vec3 heightHandlePlace_() const;
    void moveHeightHandle_(const halCore::Vec3& pos);

    std::span<const Grabbed> order_;
    std::unique_ptr<PluginUtils::PUDrawPoint> heightHandle_;
};

}  // namespace OverlayEditor
