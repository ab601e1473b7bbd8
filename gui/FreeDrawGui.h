#pragma once

#include "gui/DrawRow.h"
#include "gui/NumberRow.h"
#include "gui/StyleWidgets.h"

namespace OverlayEditor {

/// The panel of lines drawn by hand.
class FreeDrawGui final : public FreeDrawPanel {
  public:
    /// \param canvas holds the panel and must outlive it
    /// \param change called after every edit of the user's
    FreeDrawGui(PIGUI::PICanvas& canvas, PanelChange change);

    void setDrawCheck(bool drawn) override { draw_.setDrawCheck(drawn); }
    bool drawCheck() const override { return draw_.drawCheck(); }
    void setPixelPrecision(int pixels) override { pixelPrecision_.setValue(pixels); }
    int pixelPrecision() const override { return pixelPrecision_.value(); }
    LineStyleGUI& lineStyle() override { return lineStyle_; }
    /// It shows no positions and no values with units.
    void setPointConverter(PointConverter*) override {}
    void notifyPrefsUpdate() override {}

    /// Every edit ends here.
    void onCmdChange();

  private:
    PanelChange change_;
    PIGUI::PIHorizontalMatrix table_;
    DrawRow draw_;
    NumberRow pixelPrecision_;
    LineStyleWidgets lineStyle_;
};

}  // namespace OverlayEditor
