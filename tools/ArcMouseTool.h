#pragma once

#include "tools/CylinderMouseTool.h"

namespace OverlayEditor {

/// Draws arcs and wedges: press at the centre, drag, release at the start of the arc; then press and
/// release at its end. The radius follows the point set last. Afterwards the axis points change the radii,
/// the angle points the angles, and the centre carries the whole shape.
class ArcMouseTool final : public CylinderMouseTool {
  public:
    ArcMouseTool(const Preferences& preferences, CylinderShape& shape);
    ~ArcMouseTool() override;

  protected:
    std::string getPointText_(const halCore::Vec3& pos) const override;
    void handleStartDrag_(const halCore::Vec3& pos) override;
    void handleFinishDrag_(const halCore::Vec3& pos) override;
    void handleAbortDrag_() override;
    void movePoint_(Grabbed grabbed, const halCore::Vec3& pos) override;
    void spanRubberBand_(CylinderShape& rubberBand, const halCore::Vec3& pos) const override;
    std::string_view placingHint_() const override;
    /// The radius at the start of the arc.
    std::optional<double> lastLength_() const override {
        return shape_.startAnglePt() ? std::optional(shape_.majorAxis()) : std::nullopt;
    }
};

}  // namespace OverlayEditor
