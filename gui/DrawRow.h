#pragma once

#include "model/Panels.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// The check button that draws or hides a shape: the first row of each panel's table of three columns.
class DrawRow {
  public:
    DrawRow(PIGUI::PICanvas& table, PanelChange change);
    ~DrawRow() { callbacks_.disconnect(); }
    DrawRow(const DrawRow&) = delete;
    DrawRow& operator=(const DrawRow&) = delete;

    void setDrawCheck(bool drawn);
    bool drawCheck() const { return drawn_; }

    int onCmdDraw(PIObject* sender, void* data);

  private:
    PanelChange change_;
    bool drawn_ = false;
    CallbackList<DrawRow> callbacks_{this};
    PIGUI::PILabel caption_;
    PIGUI::PICheckButton check_;
    PIGUI::PILabel filler_;
};

}  // namespace OverlayEditor
