#pragma once

#include "gui/NextRow.h"

namespace OverlayEditor {

/// The row alone, for drawing without the editor's dialog.
class NextPointDialog {
  public:
    explicit NextPointDialog(NextTarget target);
    NextPointDialog(const NextPointDialog&) = delete;
    NextPointDialog& operator=(const NextPointDialog&) = delete;

    /// Empty, for what is drawn now.
    void show();
    void hide();

  private:
    PIGUI::PIDialogBox box_;
    PIGUI::PIHorizontalMatrix table_;
    NextRow row_;
};

}  // namespace OverlayEditor
