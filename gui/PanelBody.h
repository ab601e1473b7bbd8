#pragma once

#include <utility>
#include <vector>

#include "model/Panels.h"
#include "model/Preferences.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// A part of a panel that shows positions, or values with units.
class PanelPart {
  public:
    /// Units, precision or the coordinate system changed: everything is shown anew.
    virtual void notifyPrefsUpdate() {}
    /// Whose reference positions are offsets from; null for none. Not owned.
    virtual void setPointConverter(const PointConverter*) {}

  protected:
    ~PanelPart() = default;
};

/// What stands behind every panel: the table of three columns that holds its rows, and the place where every
/// edit ends.
class PanelBody {
  public:
    /// \param canvas holds the panel; it and the preferences must outlive it
    /// \param change called after every edit of the user's
    PanelBody(const Preferences& preferences, PIGUI::PICanvas& canvas, PanelChange change)
        : preferences_(preferences), change_(std::move(change)), table_(&canvas, 3) {}
    virtual ~PanelBody() = default;
    PanelBody(const PanelBody&) = delete;
    PanelBody& operator=(const PanelBody&) = delete;

    PIGUI::PICanvas* table() { return &table_; }
    const Preferences& preferences() const { return preferences_; }
    /// The part is told what changes; it is a member of the panel.
    void add(PanelPart& part) { parts_.push_back(&part); }

    /// Every edit ends here.
    virtual void onCmdChange() { change_(); }

  protected:
    std::vector<PanelPart*> parts_;

  private:
    const Preferences& preferences_;
    PanelChange change_;
    PIGUI::PIHorizontalMatrix table_;
};

}  // namespace OverlayEditor
