#pragma once

#include <string>

#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// A row of a panel's table of three columns that names the rows below it.
class HeadingRow {
  public:
    HeadingRow(PIGUI::PICanvas& table, const std::string& caption)
        : caption_(&table, caption), filler_(&table, ""), unitFiller_(&table, "") {}

  private:
    PIGUI::PILabel caption_;
    PIGUI::PILabel filler_;
    PIGUI::PILabel unitFiller_;
};

}  // namespace OverlayEditor
