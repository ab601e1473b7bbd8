#pragma once

#include <memory>
#include <optional>

#include "model/RectangleShape.h"
#include "tools/HandleMouseTool.h"

namespace OverlayEditor {

/// Draws rectangles and triangles: press at the first corner, drag, release at the last one; a release on
/// the first corner takes it back. An anchor that was typed is the centre or the first corner. Afterwards
/// each corner can be dragged. Lifting one lifts both, as the shape is flat.
class RectangleMouseTool final : public HandleMouseTool {
  public:
    RectangleMouseTool(const Preferences& preferences, RectangleShape& shape);
    ~RectangleMouseTool() override;

  protected:
    std::string getPointText_(const halCore::Vec3& pos) const override;
    void handleStartDrag_(const halCore::Vec3& pos) override;
    void handleFinishDrag_(const halCore::Vec3& pos) override;
    void handleAbortDrag_() override;
    PluginUtils::PUDrawPoint* pointNearMouse_(const halCore::Vec3& pos) override;
    std::optional<halCore::Vec3> placeOf_(Role role) const override;
    bool isComplete_() const override { return shape_.isComplete(); }
    std::unique_ptr<BaseLineShape> makeRubberBand_() const override;
    bool shapeRubberBand_(BaseLineShape& rubberBand, const halCore::Vec3& pos) override;
    void moveGrabbed_(const halCore::Vec3& pos) override;
    std::string_view placingHint_() const override;
    std::optional<double> placedAltitude_() const override;
    /// With Shift a square.
    halCore::Vec3 constrained_(const halCore::Vec3& pos, bool steps, bool keeps) const override;
    std::string modifierHint_() const override;

  private:
    /// The anchor is one that was typed: it cannot be dragged.
    enum Corner { First = 1, Last = 2, Anchor = 3 };

    /// Gives a rectangle the other corner, or its size about a typed centre.
    void span_(RectangleShape& rectangle, const halCore::Vec3& pos) const;
    /// From where the rectangle reaches to the corner that is placed or dragged.
    std::optional<halCore::Vec3> opposite_() const;
    bool isPlaced_() const { return shape_.firstCorner() || shape_.typedAnchor(); }

    /// The host may end in its deletion whenever it changes: the tool is then not active any more.
    RectangleShape& shape_;
};

}  // namespace OverlayEditor
