#pragma once

#include "model/AnnotationShape.h"
#include "tools/HandleMouseTool.h"

namespace OverlayEditor {

/// Places a label where the button is released, and moves it afterwards. There is no rubber band.
class AnnotationMouseTool final : public HandleMouseTool {
  public:
    AnnotationMouseTool(const Preferences& preferences, AnnotationShape& shape);
    ~AnnotationMouseTool() override;

  protected:
    std::string getPointText_(const halCore::Vec3& pos) const override;
    void handleStartDrag_(const halCore::Vec3&) override {}
    void handleFinishDrag_(const halCore::Vec3& pos) override;
    void handleAbortDrag_() override {}
    std::optional<halCore::Vec3> placeOf_(Role role) const override;
    /// The label's own text lies beneath it.
    void dress_(PluginUtils::PUDrawPoint& point, Role) const override { point.setHollow(true); }
    bool isComplete_() const override { return shape_.hasPoint(); }
    std::unique_ptr<BaseLineShape> makeRubberBand_() const override { return nullptr; }
    bool shapeRubberBand_(BaseLineShape&, const halCore::Vec3&) override { return false; }
    void moveGrabbed_(const halCore::Vec3& pos) override;
    std::string_view placingHint_() const override;
    std::optional<double> placedAltitude_() const override {
        const auto place = placeOf_(1);
        return place ? std::optional(place->alt()) : std::nullopt;
    }

  private:
    /// The host may end in its deletion whenever it changes: the tool is then not active any more.
    AnnotationShape& shape_;
};

}  // namespace OverlayEditor
