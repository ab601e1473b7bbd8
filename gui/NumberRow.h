#pragma once

#include <string>

#include "model/Panels.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// A whole number: a row of a panel's table of three columns. Unless it is edited it answers what was set,
/// also what the widget cannot show.
class NumberRow {
  public:
    /// \param unit what stands behind the number
    /// \param least a smaller number is refused with a message
    NumberRow(PIGUI::PICanvas& table, const std::string& caption, const std::string& unit, int least,
              PanelChange change);
    ~NumberRow() { callbacks_.disconnect(); }
    NumberRow(const NumberRow&) = delete;
    NumberRow& operator=(const NumberRow&) = delete;

    void setValue(int value);
    int value() const { return value_; }

    int onCmdEdit(PIObject* sender, void* data);

  private:
    PanelChange change_;
    std::string name_;
    int least_;
    int value_ = 0;
    CallbackList<NumberRow> callbacks_{this};
    PIGUI::PILabel caption_;
    PIGUI::PISpinner field_;
    PIGUI::PILabel unit_;
};

}  // namespace OverlayEditor
