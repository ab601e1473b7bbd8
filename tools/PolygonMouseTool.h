#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "geo/PathMeasure.h"
#include "model/PointsTool.h"
#include "model/PolygonShape.h"
#include "tools/PUDrawLine.h"
#include "tools/PUDrawPoints.h"
#include "tools/ShapeMouseTool.h"

namespace OverlayEditor {

/// Draws lines and polygons: each click that is not on a point appends one, until a right click. The first
/// press places the first point, so that a drag from there draws the first segment; clicking the only
/// point again removes it. The tool never completes by itself: a line can always be continued.
class PolygonMouseTool final : public ShapeMouseTool, public PointsTool {
  public:
    PolygonMouseTool(const Preferences& preferences, PolygonShape& shape);
    ~PolygonMouseTool() override;

    void activate() override;
    int leftRelease_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override;
    /// What is highlighted or dragged is let go.
    void resetPoints_() override;

    /// Of the point that is highlighted or dragged, else of the next one to be placed.
    std::size_t pointIndex() const { return grabbed_.value_or(shape_.getNumPoints()); }

  protected:
    std::string getPointText_(const halCore::Vec3& pos) const override;
    void handleStartDrag_(const halCore::Vec3& pos) override;
    void handleFinishDrag_(const halCore::Vec3& pos) override;
    void handleAbortDrag_() override;
    PluginUtils::PUDrawPoint* pointNearMouse_(const halCore::Vec3& pos) override;
    void redrawPointsForViewChange_() override;
    bool isComplete_() const override { return false; }
    bool hasPointAt_(const PluginUtils::GrabbingCursor& cursor) const override {
        return drawn_.grabbedBy(cursor).has_value();
    }
    void wholeMoved_() override { carryPoints_(); }
    void drawGuide_(const halCore::Vec3& pos) override;
    void pointTaken_() override;
    const Shape* edited_() const override { return &shape_; }
    std::optional<std::size_t> draggedIndex_() const override { return grabbed_; }
    bool hasOwnAltitude_() const override { return true; }
    std::optional<halCore::Vec3> pivot_() const override;
    std::optional<double> lastLength_() const override;
    std::optional<double> placedAltitude_() const override;
    void showEditPoints_(bool shown) override;
    /// A line, for polygons too: it is the next segment.
    std::unique_ptr<BaseLineShape> makeRubberBand_() const override;
    bool shapeRubberBand_(BaseLineShape& rubberBand, const halCore::Vec3& pos) override;
    void grab_(const PluginUtils::PUDrawPoint* point) override { grabbed_ = drawn_.indexOf(point); }
    void clearGrab_() override;
    void moveGrabbed_(const halCore::Vec3& pos) override;
    std::string_view placingHint_() const override;
    std::string_view hoveringHint_() const override;

  private:
    static constexpr std::uint32_t kGuideColor = 0xFFFFFFB0;

    /// \return false when the shape did not take the point
    bool append_(const halCore::Vec3& pos);
    /// The points have moved with what they count from, each still being itself: what is done with the mouse
    /// goes on.
    void carryPoints_();
    void removeFirstPoint_();

    /// The host may end in its deletion whenever it changes: the tool is then not active any more.
    PolygonShape& shape_;
    PluginUtils::PUDrawPoints drawn_{PluginUtils::kEditPointColor};
    /// Appends the length of all legs and the area, with a point to be placed there.
    void appendSums_(std::ostream& text, const halCore::Vec3& pos) const;
    /// The points so far, unless they have changed since in another way than by being appended.
    mutable halCore::PathMeasure measure_;
    mutable bool measured_ = false;
    /// The shape's, when the points were drawn last.
    std::uint64_t revision_ = 0;
    std::optional<std::size_t> grabbed_;
    bool moved_ = false;
    /// What leads from the last point, and to the first one of a polygon, to the cursor.
    PluginUtils::PUDrawLine onward_{{}, {}, kGuideColor, 1.0};
    PluginUtils::PUDrawLine back_{{}, {}, kGuideColor, 1.0};
    /// The side between two points while the host cannot show it: two are no polygon.
    PluginUtils::PUDrawLine side_{{}, {}, 0};
    /// This tool has placed the first point, and no other yet.
    bool firstPoint_ = false;
};

}  // namespace OverlayEditor
