#pragma once

#include "gui/PanelRows.h"

namespace OverlayEditor {

/// The panel of lines drawn by hand. It shows no positions and no values with units.
class FreeDrawGui final : public PanelOf<FreeDrawPanel> {
  public:
    using PanelOf::PanelOf;

    void setPixelPrecision(int pixels) override { pixelPrecision_.setValue(pixels); }
    int pixelPrecision() const override { return pixelPrecision_.value(); }
    LineStyleGUI& lineStyle() override { return lineStyle_; }

  private:
    NumberRow pixelPrecision_{*this,
                              "Pixel Precision:\tNumber of pixels mouse moves before defining a new point in "
                              "the line. Only takes effect when starting new line.",
                              "pixels", 1};
    LineStyleRows lineStyle_{*this};
};

}  // namespace OverlayEditor
