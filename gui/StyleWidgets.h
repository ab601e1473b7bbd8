#pragma once

#include "model/Panels.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// Line width and line colour: two rows of a panel's table of three columns. What is not edited is
/// answered as it was set, whatever the widgets can show of it.
class LineStyleWidgets final : public LineStyleGUI {
  public:
    LineStyleWidgets(PIGUI::PICanvas& table, PanelChange change);
    ~LineStyleWidgets() override { callbacks_.disconnect(); }

    void setColor(std::uint32_t rgba) override;
    std::uint32_t color() const override { return color_; }
    void setWidth(int pixels) override;
    int width() const override { return width_; }

    int onCmdWidth(PIObject* sender, void* data);
    int onCmdColor(PIObject* sender, void* data);

  private:
    PanelChange change_;
    std::uint32_t color_ = 0;
    int width_ = 0;
    CallbackList<LineStyleWidgets> callbacks_{this};
    PIGUI::PILabel widthCaption_;
    PIGUI::PISpinner widthField_;
    PIGUI::PILabel widthUnit_;
    PIGUI::PILabel colorCaption_;
    PIGUI::PIColorWell colorWell_;
    PIGUI::PILabel colorFiller_;
};

/// Filled flag and fill colour: two rows of a panel's table of three columns.
class FillStyleWidgets final : public FillStyleGUI {
  public:
    FillStyleWidgets(PIGUI::PICanvas& table, PanelChange change);
    ~FillStyleWidgets() override { callbacks_.disconnect(); }

    void setFilled(bool filled) override;
    bool filled() const override { return filled_; }
    void setColor(std::uint32_t rgba) override;
    std::uint32_t color() const override { return color_; }

    int onCmdFilled(PIObject* sender, void* data);
    int onCmdColor(PIObject* sender, void* data);

  private:
    PanelChange change_;
    std::uint32_t color_ = 0;
    bool filled_ = false;
    CallbackList<FillStyleWidgets> callbacks_{this};
    PIGUI::PILabel filledCaption_;
    PIGUI::PICheckButton filledCheck_;
    PIGUI::PILabel filledFiller_;
    PIGUI::PILabel colorCaption_;
    PIGUI::PIColorWell colorWell_;
    PIGUI::PILabel colorFiller_;
};

}  // namespace OverlayEditor
