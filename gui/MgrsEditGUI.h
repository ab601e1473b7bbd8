#pragma once

#include <string>

#include "gui/PointEditor.h"
#include "gui/ValueUnitEntry.h"

namespace OverlayEditor {

/// A position as an MGRS reference and an altitude: three rows of a panel's table. The reference is shown to
/// the metre; one that is typed means the south-west corner of its square. A whole reference may be
/// typed into either field.
class MgrsEditGUI final : public PointEditor {
  public:
    MgrsEditGUI(PIGUI::PICanvas& table, const Preferences& preferences, const PanelChange& change);
    ~MgrsEditGUI() override { callbacks_.disconnect(); }

    void setPosition(const halCore::Vec3& lla) override;
    std::optional<halCore::Vec3> edited() const override;
    bool placeEdited() const override { return referenceEdited_; }
    void notifyPrefsUpdate() override;
    void setShown(bool shown) override;
    void setEnabled(bool enabled) override;

    /// One of the two fields was edited. Text that denotes no place is reported, and the fields show the
    /// position again.
    int onCmdEdit(PIObject* sender, void* data);

  private:
    std::string read_(const std::string& square, const std::string& numbers, halCore::Vec3& lla) const;
    void showReference_();

    PanelChange change_;
    halCore::Vec3 position_;
    bool referenceEdited_ = false;
    std::string shownSquare_;
    std::string shownNumbers_;
    CallbackList<MgrsEditGUI> callbacks_{this};
    PIGUI::PILabel squareCaption_;
    PIGUI::PITextField square_;
    PIGUI::PILabel squareUnit_;
    PIGUI::PILabel numbersCaption_;
    PIGUI::PITextField numbers_;
    PIGUI::PILabel numbersUnit_;
    ValueUnitEntry alt_;
};

}  // namespace OverlayEditor
