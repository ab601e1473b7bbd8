#pragma once

#include <memory>

#include "model/BaseLineShape.h"
#include "tools/BaseMouseTool.h"
#include "tools/WholeHandle.h"

namespace OverlayEditor {

/// What the drawing tools have in common beside the event sequence: being activated and deactivated, the
/// shape's edit points, and the rubber band. The rubber band is an orange copy of the shape that the host
/// shows while the button is held; it is handed over anew only when the cursor has moved.
///
/// The destructor of a concrete tool calls deactivate().
class ShapeMouseTool : public BaseMouseTool {
  public:
    /// \param shape the concrete tool's
    ShapeMouseTool(const Preferences& preferences, Shape& shape)
        : BaseMouseTool(preferences), shape_(shape), whole_(shape) {}

    void activate() override;
    void deactivate() override;
    void setShowPoints(bool shown) override;
    void preDrawOnRefresh(int width, int height) override;

  protected:
    void drawTempGraphics_(const halCore::Vec3& pos) override;
    void finishEditing_() override;
    void handleAltitudeChange_() override;
    void handleMovePoint_(const halCore::Vec3& pos) override;
    void removeTempGraphics_() override;
    void updatePoints_() override;
    PluginUtils::PUDrawPoint* wholeNearMouse_(const halCore::Vec3& pos) override;
    bool isWhole_() const override { return nearPoint_ && nearPoint_ == &whole_.point(); }
    bool turns_() const override { return whole_.canTurn(); }
    std::optional<halCore::Vec3> wholeFrom_() const override;
    void beginTurn_() override { whole_.beginTurn(); }
    void handleTurn_(const halCore::Vec3& cursor, bool steps) override;
    void pointTaken_() override;
    std::string nearText_() override;
    void finishRefresh_() override;

    virtual bool isComplete_() const = 0;
    /// Whether no click places anything any more, so that the whole can be grabbed at once. What goes on for
    /// ever is moved when it was complete before its tool was activated.
    virtual bool isDone_() const { return isComplete_(); }
    /// Whether an edit point would be grabbed there.
    virtual bool hasPointAt_(const PluginUtils::GrabbingCursor& cursor) const = 0;
    /// The shape has been moved or turned by its handle.
    virtual void wholeMoved_();
    /// Makes the drawn points those of the shape, and shows or hides them.
    virtual void showEditPoints_(bool shown) = 0;
    /// A copy of the shape; null for a tool without a rubber band.
    virtual std::unique_ptr<BaseLineShape> makeRubberBand_() const = 0;
    /// Gives the rubber band its geometry for a cursor. It is not displayed meanwhile.
    /// \return false when there is nothing to show
    virtual bool shapeRubberBand_(BaseLineShape& rubberBand, const halCore::Vec3& pos) = 0;
    /// Takes one of the shape's edit points for grabbed.
    virtual void grab_(const PluginUtils::PUDrawPoint* point) = 0;
    virtual void clearGrab_() = 0;
    /// Moves the grabbed point, and the shape with it; nothing without one.
    virtual void moveGrabbed_(const halCore::Vec3& pos) = 0;

    State restingState_() const { return isComplete_() ? Complete : Placing; }
    void updateEditPoints_() { showEditPoints_(showPoints_); }

  private:
    void hideRubberBand_();
    void moveWhole_(const halCore::Vec3& pos);
    std::string wholeText_() const;

    Shape& shape_;
    WholeHandle whole_;
    /// The shape was complete when the tool was activated.
    bool edits_ = false;
    std::unique_ptr<BaseLineShape> rubberBand_;
    bool rubberBandShown_ = false;
    /// During a refresh the rubber band is hidden only at its end, and only when it was not drawn again.
    bool rubberBandWanted_ = false;
    bool refreshing_ = false;
    halCore::Vec3 rubberBandAt_;
};

}  // namespace OverlayEditor
