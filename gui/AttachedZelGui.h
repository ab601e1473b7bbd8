#pragma once

#include <string>

#include "gui/SelectPlatformDialog.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// The row that shows and changes the platform that the edited overlay is attached to: two cells of a
/// table.
class AttachedZelGui {
  public:
    /// What stands for no platform.
    static constexpr const char* EMPTY_PLATFORM_NAME = "None";

    /// \param change called with the chosen platform's id (unsigned long*), or with null to detach
    /// \param pickChange called when picking with the mouse starts or ends
    /// Both must live until this row goes; the table and the manager must outlive it.
    AttachedZelGui(PIGUI::PICanvas* parent, MouseManager* mouseManager, FunctorTwoParams__* change,
                   FunctorTwoParams__* pickChange);
    ~AttachedZelGui() { callbacks_.disconnect(); }
    AttachedZelGui(const AttachedZelGui&) = delete;
    AttachedZelGui& operator=(const AttachedZelGui&) = delete;

    /// Shows a platform, 0 for none; calls nobody.
    void setAttachPlatform(unsigned long id);
    void reset() { setAttachPlatform(0); }
    void refreshPlatformList();
    bool centerOnHost() const { return platforms_.centerOnHost(); }
    /// Disabling also ends choosing a platform. \param why not, shown as the tooltip
    void setControlsEnabled(bool enabled, const std::string& why);
    /// Ends choosing a platform without a choice.
    void hideDialog();

    int onCmdSelect(PIObject* sender, void* data);
    int onCmdSelected(PIObject* sender, void* data);

  private:
    FunctorTwoParams__* change_;
    unsigned long platform_ = 0;
    /// Why the row cannot be used, empty when it can.
    std::string why_;
    CallbackList<AttachedZelGui> callbacks_{this};
    PIGUI::PILabel caption_;
    PIGUI::PICheckButton check_;
    SelectPlatformDialog platforms_;
};

}  // namespace OverlayEditor
