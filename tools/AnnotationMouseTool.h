#pragma once

#include "model/AnnotationShape.h"
#include "tools/ShapeMouseTool.h"

namespace OverlayEditor {

/// Places a label where the button is released, and moves it afterwards. There is no rubber band.
class AnnotationMouseTool final : public ShapeMouseTool {
  public:
    AnnotationMouseTool(const Preferences& preferences, AnnotationShape& shape);
    ~AnnotationMouseTool() override;

  protected:
    std::string getPointText_(const halCore::Vec3& pos) const override;
    void handleStartDrag_(const halCore::Vec3&) override {}
    void handleFinishDrag_(const halCore::Vec3& pos) override;
    void handleAbortDrag_() override {}
    PluginUtils::PUDrawPoint* pointNearMouse_(const halCore::Vec3& pos) override;
    void redrawPointsForViewChange_() override;
    bool hasPoint_(const PluginUtils::PUDrawPoint* point) const override { return point == point_.get(); }
    bool isComplete_() const override { return shape_.hasPoint(); }
    void showEditPoints_(bool shown) override;
    std::unique_ptr<BaseLineShape> makeRubberBand_() const override { return nullptr; }
    bool shapeRubberBand_(BaseLineShape&, const halCore::Vec3&) override { return false; }
    void grab_(const PluginUtils::PUDrawPoint* point) override { grabbed_ = point && hasPoint_(point); }
    void clearGrab_() override { grabbed_ = false; }
    void moveGrabbed_(const halCore::Vec3& pos) override;
    std::string_view placingHint_() const override;

  private:
    /// The host may end in its deletion whenever it changes: the tool is then not active any more.
    AnnotationShape& shape_;
    /// Null until the label has a position.
    std::unique_ptr<PluginUtils::PUDrawPoint> point_;
    bool grabbed_ = false;
};

}  // namespace OverlayEditor
