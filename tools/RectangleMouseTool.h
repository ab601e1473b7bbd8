#pragma once

#include <memory>
#include <optional>

#include "model/RectangleShape.h"
#include "tools/HandleMouseTool.h"

namespace OverlayEditor {

/// Draws rectangles and triangles: press at the first corner, drag, release at the last one; a release on
/// the first corner takes it back. Afterwards each corner can be dragged. Lifting one lifts both, as the
/// shape is flat.
class RectangleMouseTool final : public HandleMouseTool {
  public:
    RectangleMouseTool(const Preferences& preferences, RectangleShape& shape);
    ~RectangleMouseTool() override;

  protected:
    std::string getPointText_(const halCore::Vec3& pos) const override;
    void handleStartDrag_(const halCore::Vec3& pos) override;
    void handleFinishDrag_(const halCore::Vec3& pos) override;
    void handleAbortDrag_() override;
    std::optional<halCore::Vec3> placeOf_(Role role) const override;
    bool isComplete_() const override { return shape_.isComplete(); }
    std::unique_ptr<BaseLineShape> makeRubberBand_() const override;
    bool shapeRubberBand_(BaseLineShape& rubberBand, const halCore::Vec3& pos) override;
    void moveGrabbed_(const halCore::Vec3& pos) override;
    std::string_view placingHint_() const override;

  private:
    enum Corner { First = 1, Last = 2 };

    /// The host may end in its deletion whenever it changes: the tool is then not active any more.
    RectangleShape& shape_;
};

}  // namespace OverlayEditor
