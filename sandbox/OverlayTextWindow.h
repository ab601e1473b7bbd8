#pragma once

#include <QDialog>

namespace sandbox {

class LoadedOverlay;

/// Shows an overlay's text as it was read, and what reading it had to say: a click on a message goes to
/// its line. Deletes itself when it is closed.
class OverlayTextWindow : public QDialog {
  public:
    OverlayTextWindow(const LoadedOverlay& overlay, QWidget* parent);
};

}  // namespace sandbox
