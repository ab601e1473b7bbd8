#pragma once

#include "gui/PointEditGui.h"

namespace OverlayEditor {

/// The panel of orbits.
class OrbitGui final : public PanelOf<OrbitPanel> {
  public:
    using PanelOf::PanelOf;

    void setCenterLla(const PlacedPoint& point) override { center1_.setPosition(point); }
    std::optional<PlacedPoint> centerLla() const override { return center1_.edited(); }
    bool placesCenter() const override { return center1_.placeEdited(); }
    bool placesCenter2() const override { return center2_.placeEdited(); }
    void setCenterLla2(const PlacedPoint& point) override { center2_.setPosition(point); }
    std::optional<PlacedPoint> centerLla2() const override { return center2_.edited(); }
    void setRadius(double meters) override { radius_.setValue(meters); }
    std::optional<double> radius() const override { return radius_.edited(); }
    LineStyleGUI& lineStyle() override { return lineStyle_; }
    FillStyleGUI& fillStyle() override { return fillStyle_; }

  private:
    HeadingRow heading1_{*this, "Center 1:\tCenter point for first end of the orbit shape"};
    PointEditGui center1_{*this};
    HeadingRow heading2_{*this, "Center 2:\tCenter point for other end of the orbit shape"};
    PointEditGui center2_{*this};
    ValueUnitEntry radius_{*this, "Radius:\tRadius for this shape", ValueUnitEntry::Quantity::Radius};
    LineStyleRows lineStyle_{*this};
    FillStyleRows fillStyle_{*this};
};

}  // namespace OverlayEditor
