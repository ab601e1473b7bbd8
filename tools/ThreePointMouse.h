#pragma once

#include "tools/CylinderMouseTool.h"

namespace OverlayEditor {

/// Draws the shapes of two radii: press at the centre, drag, release at the X radius; then press and
/// release at the Y radius. Afterwards each axis point slides along its axis, X to the east and Y to the
/// north, and the centre carries the whole shape.
class ThreePointMouse : public CylinderMouseTool {
  public:
    ThreePointMouse(const Preferences& preferences, CylinderShape& shape);
    ~ThreePointMouse() override;

  protected:
    std::string getPointText_(const halCore::Vec3& pos) const override;
    void handleStartDrag_(const halCore::Vec3& pos) override;
    void handleFinishDrag_(const halCore::Vec3& pos) override;
    void handleAbortDrag_() override;
    void movePoint_(Grabbed grabbed, const halCore::Vec3& pos) override;
    void spanRubberBand_(CylinderShape& rubberBand, const halCore::Vec3& pos) const override;
    std::string_view placingHint_() const override;
    /// Its points slide along their axes: there is nothing to turn.
    std::optional<halCore::Vec3> pivot_() const override { return std::nullopt; }
};

}  // namespace OverlayEditor
