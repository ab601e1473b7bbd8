#pragma once

#include <QDialog>

#include "sandbox/WorkInTurns.h"

namespace sandbox {

class LoadedOverlay;

/// Shows an overlay's text as it was read, and what reading it had to say: a click on a message goes to
/// its line. A long text comes in slices, and of a very long line the beginning. Deletes itself when it is
/// closed.
class OverlayTextWindow : public QDialog {
  public:
    OverlayTextWindow(const LoadedOverlay& overlay, QWidget* parent);

  private:
    WorkInTurns filling_;
};

}  // namespace sandbox
