#pragma once

#include "tools/CylinderMouseTool.h"

namespace OverlayEditor {

/// Draws the shapes of one radius: press at the centre, drag outward, release on the edge. A release
/// on the centre leaves an empty shape. Dragging the centre leaves the radius point where it is.
class CircleMouseTool final : public CylinderMouseTool {
  public:
    CircleMouseTool(const Preferences& preferences, CylinderShape& shape);
    ~CircleMouseTool() override;

  protected:
    std::string getPointText_(const halCore::Vec3& pos) const override;
    void handleStartDrag_(const halCore::Vec3& pos) override;
    void handleFinishDrag_(const halCore::Vec3& pos) override;
    void handleAbortDrag_() override;
    void movePoint_(Grabbed grabbed, const halCore::Vec3& pos) override;
    void spanRubberBand_(CylinderShape& rubberBand, const halCore::Vec3& pos) const override;
    std::string_view placingHint_() const override;
};

}  // namespace OverlayEditor
