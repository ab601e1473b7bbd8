#pragma once

#include "gui/PointsGui.h"
#include "model/PolygonShape.h"

namespace OverlayEditor {

/// The panel of lines and polygons.
class PolygonGui final : public PanelOf<PolygonPanel> {
  public:
    PolygonGui(PolygonShape::Subtype subtype, const Preferences& preferences, PIGUI::PICanvas& canvas,
               PanelChange change)
        : PanelOf(preferences, canvas, std::move(change)), points_(*this, subtype == PolygonShape::Polygon) {}

    void setShape(PolygonShape& shape) override { points_.setPoints(shape); }
    void refreshPoint(unsigned long index) override { points_.refreshPoint(index); }
    unsigned long shownPoint() const override { return points_.shownPoint(); }
    LineStyleGUI& lineStyle() override { return lineStyle_; }
    FillStyleGUI& fillStyle() override { return fillStyle_; }

    void onCmdChange() override {
        if (!points_.takeEdit()) PanelOf::onCmdChange();
    }

  private:
    PointsGui points_;
    LineStyleRows lineStyle_{*this};
    FillStyleRows fillStyle_{*this};
};

}  // namespace OverlayEditor
