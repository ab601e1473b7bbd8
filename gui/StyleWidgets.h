#pragma once

#include <string>

#include "gui/NumberRow.h"
#include "model/Panels.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// A colour with its transparency: a row of a panel's table of three columns.
class ColorRow {
  public:
    ColorRow(PIGUI::PICanvas& table, const std::string& caption, PanelChange change);
    ~ColorRow() { callbacks_.disconnect(); }
    ColorRow(const ColorRow&) = delete;
    ColorRow& operator=(const ColorRow&) = delete;

    /// Red in the top byte, alpha in the lowest.
    void setColor(std::uint32_t rgba);
    std::uint32_t color() const { return color_; }

    int onCmdColor(PIObject* sender, void* data);

  private:
    PanelChange change_;
    std::uint32_t color_ = 0;
    CallbackList<ColorRow> callbacks_{this};
    PIGUI::PILabel caption_;
    PIGUI::PIColorWell well_;
    PIGUI::PILabel filler_;
};

/// Line width and line colour: two rows of a panel's table of three columns. What is not edited is
/// answered as it was set, whatever the widgets can show of it.
class LineStyleWidgets final : public LineStyleGUI {
  public:
    LineStyleWidgets(PIGUI::PICanvas& table, const PanelChange& change);

    void setColor(std::uint32_t rgba) override { color_.setColor(rgba); }
    std::uint32_t color() const override { return color_.color(); }
    void setWidth(int pixels) override { width_.setValue(pixels); }
    int width() const override { return width_.value(); }

  private:
    NumberRow width_;
    ColorRow color_;
};

/// Filled flag and fill colour: two rows of a panel's table of three columns.
class FillStyleWidgets final : public FillStyleGUI {
  public:
    FillStyleWidgets(PIGUI::PICanvas& table, PanelChange change);
    ~FillStyleWidgets() override { callbacks_.disconnect(); }

    void setFilled(bool filled) override;
    bool filled() const override { return filled_; }
    void setColor(std::uint32_t rgba) override { color_.setColor(rgba); }
    std::uint32_t color() const override { return color_.color(); }

    int onCmdFilled(PIObject* sender, void* data);

  private:
    PanelChange change_;
    bool filled_ = false;
    CallbackList<FillStyleWidgets> callbacks_{this};
    PIGUI::PILabel filledCaption_;
    PIGUI::PICheckButton filledCheck_;
    PIGUI::PILabel filledFiller_;
    ColorRow color_;
};

}  // namespace OverlayEditor
