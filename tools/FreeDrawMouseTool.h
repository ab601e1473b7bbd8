#pragma once

#include "model/FreeDrawShape.h"
#include "tools/ShapeMouseTool.h"

namespace OverlayEditor {

/// Draws by hand: from a press to the release the mouse leaves a line behind it, with a point wherever it
/// has moved far enough, in pixels of the mouse events, from the last one. As many lines as one likes, until
/// a right click. Complete means that the tool rests between two lines, Placing that a line is being drawn.
class FreeDrawMouseTool final : public ShapeMouseTool {
  public:
    FreeDrawMouseTool(const Preferences& preferences, FreeDrawShape& shape);
    ~FreeDrawMouseTool() override;

    int leftPress_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override;
    int leftRelease_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override;
    /// Consumed: the host's menu would cover the drawing.
    int rightPress_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override;
    int mouseMotion_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override;

  protected:
    std::string getPointText_(const halCore::Vec3& pos) const override;
    void handleStartDrag_(const halCore::Vec3& pos) override;
    void handleFinishDrag_(const halCore::Vec3&) override { handleAbortDrag_(); }
    /// Ends the line. What has no second point is none.
    void handleAbortDrag_() override;
    PluginUtils::PUDrawPoint* pointNearMouse_(const halCore::Vec3&) override { return nullptr; }
    void redrawPointsForViewChange_() override {}
    bool isComplete_() const override { return true; }
    bool isDone_() const override { return false; }
    bool hasPointAt_(const PluginUtils::GrabbingCursor&) const override { return false; }
    void showEditPoints_(bool) override {}
    std::unique_ptr<BaseLineShape> makeRubberBand_() const override { return nullptr; }
    bool shapeRubberBand_(BaseLineShape&, const halCore::Vec3&) override { return false; }
    void grab_(const PluginUtils::PUDrawPoint*) override {}
    void clearGrab_() override {}
    void moveGrabbed_(const halCore::Vec3&) override {}
    std::string_view placingHint_() const override { return "Release to end the line"; }
    std::string_view completeHint_() const override {
        return "Press and drag to draw a line. Right click ends drawing";
    }

  private:
    void rememberPlace_(const PIGUI::PIMouseEvent& event);

    /// The host may end in its deletion whenever it changes: the tool is then not active any more.
    FreeDrawShape& shape_;
    /// Where the last point was added.
    int addedX_ = 0;
    int addedY_ = 0;
    /// The shape's when the line was begun.
    int precision_ = FreeDrawShape::kDefaultPixelPrecision;
};

}  // namespace OverlayEditor
