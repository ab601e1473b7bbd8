#pragma once

#include <optional>

#include "gui/LlaEditGUI.h"
#include "gui/MgrsEditGUI.h"

namespace OverlayEditor {

/// One point, shown in the coordinate system that the preferences name. Rows of a panel's table of three
/// columns.
class PointEditGui {
  public:
    /// \param change called after each edit of the user's that gave a position
    PointEditGui(PIGUI::PICanvas& table, const Preferences& preferences, const PanelChange& change);

    /// Radians and metres. \see PointEditor
    void setPosition(const halCore::Vec3& lla);
    std::optional<halCore::Vec3> edited() const { return current_->edited(); }
    void notifyPrefsUpdate();

  private:
    /// The editor of the preferences' coordinate system, the only one that is shown.
    PointEditor* chosen_();

    const Preferences& preferences_;
    halCore::Vec3 position_;
    LlaEditGUI lla_;
    MgrsEditGUI mgrs_;
    PointEditor* current_;
};

}  // namespace OverlayEditor
