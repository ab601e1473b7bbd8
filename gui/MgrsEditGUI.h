#pragma once

#include <string>

#include "gui/Captions.h"
#include "gui/PointEditor.h"
#include "gui/ValueUnitEntry.h"

namespace OverlayEditor {

/// A position as an MGRS reference and an altitude. The reference is shown to the metre; one that is typed
/// means the south-west corner of its square. A whole reference may be typed into either field, parted by
/// blanks, commas or slashes.
class MgrsEditGUI final : public PointEditor {
  public:
    explicit MgrsEditGUI(PanelBody& panel);

    void setPosition(const PlacedPoint& point) override;
    std::optional<PlacedPoint> edited() const override;
    bool placeEdited() const override { return referenceEdited_; }
    void setTaker(const Taker& taker) override;

  private:
    /// One of the two fields of the reference.
    class TextRow final : public Row {
      public:
        TextRow(PanelBody& panel, MgrsEditGUI& editor, const std::string& caption, const std::string& unit)
            : Row(panel, caption, PIGUI::PITextFieldNormal, unit),
              editor_(editor),
              name_(captionName(caption)) {}
        const std::string& name() const { return name_; }
        std::string text() const { return field_.getValueText(); }
        void setText(const std::string& text) { field_.setValue(text); }
        RefusedText& refused() { return refused_; }

      private:
        bool takeEdit_() override { return editor_.takeReference_(*this); }

        MgrsEditGUI& editor_;
        std::string name_;
        RefusedText refused_{field_};
    };
    /// What the two fields hold.
    struct Texts {
        std::string square;
        std::string numbers;
        bool operator==(const Texts&) const = default;
    };

    std::array<Row*, 3> rows_() override { return {&square_, &numbers_, &alt_}; }
    /// One of the two fields was edited. Text that denotes no place is reported, and refused.
    /// \return whether it is a new place
    bool takeReference_(TextRow& edited);
    bool isRefused_() { return square_.refused().stands() || numbers_.refused().stands(); }
    /// Of the position; empty where there are no references.
    static Texts reference_(const halCore::Vec3& place);
    void showReference_();
    static std::string read_(const Texts& fields, halCore::Vec3& lla);

    Taker taker_;
    halCore::Vec3 position_;
    /// The last one that nobody typed here. \see ValueUnitEntry
    halCore::Vec3 given_;
    bool referenceEdited_ = false;
    TextRow square_;
    TextRow numbers_;
    ValueUnitEntry alt_;
};

}  // namespace OverlayEditor
