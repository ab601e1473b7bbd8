#pragma once

#include <memory>
#include <string>

#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// Lists the overlay files that the host has loaded, so that one can be taken into the editor.
class SelectExistingZELDialog {
  public:
    /// \param onOk called when the user presses OK; must live until this dialog goes
    explicit SelectExistingZELDialog(FunctorTwoParams__* onOk);
    ~SelectExistingZELDialog();
    SelectExistingZELDialog(const SelectExistingZELDialog&) = delete;
    SelectExistingZELDialog& operator=(const SelectExistingZELDialog&) = delete;

    void show();
    void hide() { box_.hide(); }
    /// Reads the host's overlays anew: those of each platform, then those attached to none.
    void refreshZELList();
    /// The selected item's text and the host's handle of its overlay. \return 0 when one is selected
    int getSelection(std::string& fileName, unsigned long& handle) const;

    int onCmdRefresh(PIObject* sender, void* data);
    int onCmdSelection(PIObject* sender, void* data);
    int onCmdCancel(PIObject* sender, void* data);

  private:
    class ZELEventObserver;

    CallbackList<SelectExistingZELDialog> callbacks_{this};
    std::unique_ptr<ZELEventObserver> observer_;
    PIGUI::PIDialogBox box_;
    PIGUI::PIList list_;
    PIGUI::PIHorizontalFrame buttons_;
    PIGUI::PIButton ok_;
    PIGUI::PIButton refresh_;
    PIGUI::PIButton cancel_;
};

}  // namespace OverlayEditor
