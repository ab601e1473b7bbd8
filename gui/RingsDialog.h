#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "gui/PointEditGui.h"
#include "model/PlacedPoint.h"

namespace OverlayEditor {

/// Asks for circles about one centre.
class RingsDialog {
  public:
    static constexpr int kMost = 100;

    /// \param onOk called when the user presses OK; must live until this dialog goes
    RingsDialog(const Preferences& preferences, FunctorTwoParams__* onOk);
    ~RingsDialog();
    RingsDialog(const RingsDialog&) = delete;
    RingsDialog& operator=(const RingsDialog&) = delete;

    /// \param center what is shown at first; it is an offset when the overlay counts from a reference
    /// \param reference that one, null for none
    void show(const PlacedPoint& center, const PointConverter* reference);
    void hide() { box_.hide(); }
    void notifyPrefsUpdate();

    struct Ring {
        double meters = 0.0;
        /// In the unit in which the first radius or the step was typed, else the user's range units: "5 nm".
        std::string radius;
    };
    PlacedPoint center() const { return rows_.center.position(); }
    bool labels() const { return rows_.labels.value(); }
    /// From the innermost on; none, with a message, when they cannot be made as the fields say.
    std::vector<Ring> rings() const;

    int onCmdCancel(PIObject* sender, void* data);

  private:
    class CloseObserver;
    struct Rows final : PanelBody {
        Rows(const Preferences& preferences, PIGUI::PICanvas& canvas);
        /// What was typed stands as it was understood.
        void onCmdChange() override { center.setPosition(center.position()); }

        HeadingRow heading;
        PointEditGui center;
        ValueUnitEntry first;
        ValueUnitEntry step;
        NumberRow count;
        CheckRow labels;
    };

    const Preferences& preferences_;
    /// Of its own, as the overlay's may go while the dialog is shown.
    PointConverter reference_;
    CallbackList<RingsDialog> callbacks_{this};
    PIGUI::PIDialogBox box_;
    Rows rows_;
    PIGUI::PIHorizontalFrame buttons_;
    PIGUI::PIButton ok_;
    PIGUI::PIButton cancel_;
};

}  // namespace OverlayEditor
