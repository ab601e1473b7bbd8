#pragma once

#include <memory>
#include <optional>

#include "model/RectangleShape.h"
#include "tools/ShapeMouseTool.h"

namespace OverlayEditor {

/// Draws rectangles and triangles: press at the first corner, drag, release at the last one; a release on
/// the first corner takes it back. Afterwards each corner can be dragged. Lifting one lifts both, as the
/// shape is flat.
class RectangleMouseTool final : public ShapeMouseTool {
  public:
    RectangleMouseTool(const Preferences& preferences, RectangleShape& shape);
    ~RectangleMouseTool() override;

  protected:
    std::string getPointText_(const halCore::Vec3& pos) const override;
    void handleStartDrag_(const halCore::Vec3& pos) override;
    void handleFinishDrag_(const halCore::Vec3& pos) override;
    void handleAbortDrag_() override;
    PluginUtils::PUDrawPoint* pointNearMouse_(const halCore::Vec3& pos) override;
    void redrawPointsForViewChange_() override;
    bool hasPoint_(const PluginUtils::PUDrawPoint* point) const override { return grabOf_(point) != None; }
    bool isComplete_() const override { return shape_.isComplete(); }
    void showEditPoints_(bool shown) override;
    std::unique_ptr<BaseLineShape> makeRubberBand_() const override;
    bool shapeRubberBand_(BaseLineShape& rubberBand, const halCore::Vec3& pos) override;
    void grab_(const PluginUtils::PUDrawPoint* point) override { grabbed_ = grabOf_(point); }
    void clearGrab_() override { grabbed_ = None; }
    void moveGrabbed_(const halCore::Vec3& pos) override;
    std::string_view placingHint_() const override;

  private:
    enum Grabbed { None, First, Last };
    using PointPtr = std::unique_ptr<PluginUtils::PUDrawPoint>;

    Grabbed grabOf_(const PluginUtils::PUDrawPoint* point) const;
    /// Makes an edit point stand at its corner, or go with it.
    void followCorner_(PointPtr& point, const std::optional<halCore::Vec3>& corner, bool shown);
    void shapeChanged_();

    /// The host may end in its deletion whenever it changes: the tool is then not active any more.
    RectangleShape& shape_;
    /// Null while the shape lacks the corner.
    PointPtr firstPoint_;
    PointPtr lastPoint_;
    Grabbed grabbed_ = None;
};

}  // namespace OverlayEditor
