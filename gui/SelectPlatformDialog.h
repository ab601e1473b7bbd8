#pragma once

#include <functional>
#include <memory>

#include "model/ToolRetirement.h"
#include "pi/PIWidgets.h"
#include "tools/MouseManager.h"
#include "tools/PlatformMouseTool.h"

namespace OverlayEditor {

/// Lists the host's platforms; one is picked in the list or with the mouse in the view. While it is shown
/// its picker is the current mouse tool, until another tool takes the mouse.
class SelectPlatformDialog {
  public:
    /// \param onOk called when the user presses OK
    /// \param onPick called when picking with the mouse starts or ends
    /// Both must live until this dialog goes; the manager must outlive it.
    SelectPlatformDialog(MouseManager* mouseManager, FunctorTwoParams__* onOk, FunctorTwoParams__* onPick);
    ~SelectPlatformDialog();
    SelectPlatformDialog(const SelectPlatformDialog&) = delete;
    SelectPlatformDialog& operator=(const SelectPlatformDialog&) = delete;

    void show();
    /// Also ends picking.
    void hide();
    bool shown() const { return box_.shown(); }
    /// Called when the user has closed the box.
    void setClosedCallback(std::function<void()> closed) { closed_ = std::move(closed); }

    /// Reads the host's platforms anew; the selected one stays selected.
    void refreshPlatformList();
    /// 0 when none is selected.
    unsigned long selectedPlatform() const;
    bool centerOnHost() const { return centerOnHost_.isChecked(); }

    int onCmdPlatformList(PIObject* sender, void* data);
    int onCmdPick(PIObject* sender, void* data);
    int onCmdRefresh(PIObject* sender, void* data);
    int onCmdClosed(PIObject* sender, void* data);

  private:
    class PlatformSelectListener;
    class CloseObserver;

    void select_(unsigned long platform);
    void stopPicking_();
    void picked_(unsigned long platform);
    void pickingEnded_();

    MouseManager* mouseManager_;
    FunctorTwoParams__* onPick_;
    std::function<void()> closed_;
    CallbackList<SelectPlatformDialog> callbacks_{this};
    std::shared_ptr<PlatformSelectListener> listener_;
    std::unique_ptr<CloseObserver> closeObserver_;
    MouseToolPtr pickerOwner_;
    PlatformMouseTool* picker_;
    PIGUI::PIDialogBox box_;
    PIGUI::PIList list_;
    PIGUI::PICheckButton centerOnHost_;
    PIGUI::PIHorizontalFrame buttons_;
    PIGUI::PIButton pick_;
    PIGUI::PIButton refresh_;
    PIGUI::PIButton ok_;
    PIGUI::PIButton cancel_;
};

}  // namespace OverlayEditor
