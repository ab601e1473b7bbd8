#pragma once

#include "model/OrbitShape.h"
#include "tools/ThreePointMouse.h"

namespace OverlayEditor {

/// Draws orbits: press at the first centre, drag, release at the second; then press and release where the
/// orbit's rim shall pass. Without the last step the orbit has its default radius, and the tool still
/// waits for it. Afterwards each centre moves alone, and lifting a point lifts the whole orbit.
class OrbitMouseTool final : public ThreePointMouse {
  public:
    OrbitMouseTool(const Preferences& preferences, OrbitShape& shape);
    ~OrbitMouseTool() override;

  protected:
    std::string getPointText_(const halCore::Vec3& pos) const override;
    void handleFinishDrag_(const halCore::Vec3& pos) override;
    bool isComplete_() const override { return orbit_.isComplete() && orbit_.minorAxisPt(); }
    void movePoint_(Grabbed grabbed, const halCore::Vec3& pos) override;
    void spanRubberBand_(CylinderShape& rubberBand, const halCore::Vec3& pos) const override;
    std::string_view placingHint_() const override;
    /// The other centre.
    std::optional<halCore::Vec3> pivot_() const override;

  private:
    /// The base class's shape.
    OrbitShape& orbit_;
};

}  // namespace OverlayEditor
