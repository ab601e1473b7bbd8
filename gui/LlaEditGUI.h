#pragma once

#include "gui/PointEditor.h"
#include "gui/ValueUnitEntry.h"

namespace OverlayEditor {

/// A position as latitude, longitude and altitude.
class LlaEditGUI final : public PointEditor {
  public:
    explicit LlaEditGUI(PanelBody& panel);

    void setPosition(const PlacedPoint& point) override;
    std::optional<PlacedPoint> edited() const override;
    bool placeEdited() const override { return lat_.edited() || lon_.edited(); }
    void setTaker(const Taker& taker) override;

  private:
    std::array<Row*, 3> rows_() override { return {&lat_, &lon_, &alt_}; }

    ValueUnitEntry lat_;
    ValueUnitEntry lon_;
    ValueUnitEntry alt_;
};

}  // namespace OverlayEditor
