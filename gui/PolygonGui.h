#pragma once

#include "gui/DrawRow.h"
#include "gui/PointsGui.h"
#include "gui/StyleWidgets.h"
#include "model/PolygonShape.h"

namespace OverlayEditor {

/// The panel of lines and polygons.
class PolygonGui final : public PolygonPanel {
  public:
    /// \param canvas holds the panel and must outlive it
    /// \param change called after every edit of the user's
    PolygonGui(PolygonShape::Subtype subtype, const Preferences& preferences, PIGUI::PICanvas& canvas,
               PanelChange change);

    void setDrawCheck(bool drawn) override { draw_.setDrawCheck(drawn); }
    bool drawCheck() const override { return draw_.drawCheck(); }
    void setShape(PolygonShape& shape) override { points_.setPoints(shape); }
    void refreshPoint(unsigned long index) override { points_.refreshPoint(index); }
    LineStyleGUI& lineStyle() override { return lineStyle_; }
    FillStyleGUI& fillStyle() override { return fillStyle_; }
    void setPointConverter(PointConverter* converter) override { points_.setPointConverter(converter); }
    void notifyPrefsUpdate() override { points_.notifyPrefsUpdate(); }

    /// Every edit ends here.
    void onCmdChange();

  private:
    PanelChange change_;
    PIGUI::PIHorizontalMatrix table_;
    DrawRow draw_;
    PointsGui points_;
    LineStyleWidgets lineStyle_;
    FillStyleWidgets fillStyle_;
};

}  // namespace OverlayEditor
