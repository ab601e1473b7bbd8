#pragma once

#include <cstdint>
#include <string>

#include "gui/PanelBody.h"
#include "gui/WholeNumber.h"

namespace OverlayEditor {

/// A row of a panel: a caption, a field, and what stands behind it.
template <typename Field>
class PanelRow {
  public:
    virtual ~PanelRow() { callbacks_.disconnect(); }
    PanelRow(const PanelRow&) = delete;
    PanelRow& operator=(const PanelRow&) = delete;

    void setShown(bool shown) {
        caption_.setShown(shown);
        field_.setShown(shown);
        unit_.setShown(shown);
    }
    void setEnabled(bool enabled) { field_.setEnabled(enabled); }
    /// From now on the field is about something else, which may have the same value.
    virtual void startAnew() {}
    /// Keeps room for the longest unit behind the fields of the table, so that these do not change their
    /// width.
    void setUnitRoom() { unit_.setRoom(kUnitLetters, 1); }

  private:
    /// "deg:min:sec NSEW"
    static constexpr std::int32_t kUnitLetters = 17;

    PanelBody& panel_;
    CallbackList<PanelRow> callbacks_{this};
    PIGUI::PILabel caption_;

  protected:
    /// \param style the field's style, or its caption where it has one
    template <typename Style>
    PanelRow(PanelBody& panel, const std::string& caption, const Style& style, const std::string& unit)
        : panel_(panel),
          caption_(panel.table(), caption),
          field_(panel.table(), style, callbacks_.make(&PanelRow::onCmdEdit)),
          unit_(panel.table(), unit) {}
    /// The user has used the field. \return whether that was an edit
    virtual bool takeEdit_() = 0;

    Field field_;
    PIGUI::PILabel unit_;

  private:
    int onCmdEdit(PIObject*, void*) {
        if (takeEdit_()) panel_.onCmdChange();
        return 1;
    }
};

/// Yes or no.
class CheckRow final : public PanelRow<PIGUI::PICheckButton> {
  public:
    /// \param caption with a tooltip, which the button has, too
    CheckRow(PanelBody& panel, const std::string& caption);
    void setValue(bool checked);
    bool value() const { return value_; }

  private:
    bool takeEdit_() override;

    bool value_ = false;
};

/// A whole number. Unless it is edited it answers what was set, also what the widget cannot show.
class NumberRow {
  public:
    /// \param unit what stands behind the number
    /// \param least,most what lies beyond them is refused with a message
    NumberRow(PanelBody& panel, const std::string& caption, const std::string& unit, int least,
              int most = kMost);
    ~NumberRow() { callbacks_.disconnect(); }
    NumberRow(const NumberRow&) = delete;
    NumberRow& operator=(const NumberRow&) = delete;
    void setValue(int value) { number_.show(value); }
    int value() const { return number_.value(); }

  private:
    static constexpr int kMost = 9999;
    int onCmdEdit(PIObject* sender, void* data);

    PanelBody& panel_;
    CallbackList<NumberRow> callbacks_{this};
    PIGUI::PILabel caption_;
    /// The unit stands by its number, not at the end of the row.
    PIGUI::PIHorizontalFrame pair_;
    PIGUI::PISpinner field_;
    PIGUI::PILabel unit_;
    PIGUI::PILabel filler_;
    WholeNumber number_;
};

/// A colour with its transparency: red in the top byte, alpha in the lowest.
class ColorRow final : public PanelRow<PIGUI::PIColorWell> {
  public:
    ColorRow(PanelBody& panel, const std::string& caption);
    void setValue(std::uint32_t rgba);
    std::uint32_t value() const { return value_; }

  private:
    bool takeEdit_() override;

    std::uint32_t value_ = 0;
};

/// One of two, which exclude each other.
class ChoiceRow {
  public:
    /// The first is chosen. \param first,second captions of the two
    ChoiceRow(PanelBody& panel, const std::string& caption, const std::string& first,
              const std::string& second);
    ~ChoiceRow() { callbacks_.disconnect(); }
    ChoiceRow(const ChoiceRow&) = delete;
    ChoiceRow& operator=(const ChoiceRow&) = delete;

    void setFirst(bool first);
    bool isFirst() const { return isFirst_; }

  private:
    int onCmdChoice(PIObject* sender, void* data);

    PanelBody& panel_;
    bool isFirst_ = true;
    CallbackList<ChoiceRow> callbacks_{this};
    PIGUI::PILabel caption_;
    PIGUI::PIHorizontalFrame buttons_;
    PIGUI::PIRadioButton first_;
    PIGUI::PIRadioButton second_;
    PIGUI::PILabel filler_;
};

/// Names the rows below it.
class HeadingRow {
  public:
    HeadingRow(PanelBody& panel, const std::string& caption)
        : caption_(panel.table(), caption), filler_(panel.table(), ""), unitFiller_(panel.table(), "") {}

    void setShown(bool shown) {
        for (PIGUI::PILabel* label : {&caption_, &filler_, &unitFiller_}) label->setShown(shown);
    }

  private:
    PIGUI::PILabel caption_;
    PIGUI::PILabel filler_;
    PIGUI::PILabel unitFiller_;
};

/// Line width and line colour: two rows.
class LineStyleRows final : public LineStyleGUI {
  public:
    explicit LineStyleRows(PanelBody& panel)
        : width_(panel, "Line Width: \tWidth in pixels to use for drawing the line", "pixels", 0),
          color_(panel, "Line Color:\tColor to use for drawing the line") {}

    void setColor(std::uint32_t rgba) override { color_.setValue(rgba); }
    std::uint32_t color() const override { return color_.value(); }
    void setWidth(int pixels) override { width_.setValue(pixels); }
    int width() const override { return width_.value(); }

  private:
    NumberRow width_;
    ColorRow color_;
};

/// Filled flag and fill colour: two rows.
class FillStyleRows final : public FillStyleGUI {
  public:
    explicit FillStyleRows(PanelBody& panel)
        : filled_(panel, "Filled:\tColor in shape using the fill color, otherwise draw as wireframe"),
          color_(panel, "Fill Color:\tColor to use for filling in the shape") {}

    void setFilled(bool filled) override { filled_.setValue(filled); }
    bool filled() const override { return filled_.value(); }
    void setColor(std::uint32_t rgba) override { color_.setValue(rgba); }
    std::uint32_t color() const override { return color_.value(); }

  private:
    CheckRow filled_;
    ColorRow color_;
};

/// What is the same in all panels.
template <typename Panel>
class PanelOf : public Panel, public PanelBody {
  public:
    PanelOf(const Preferences& preferences, PIGUI::PICanvas& canvas, PanelChange change)
        : PanelBody(preferences, canvas, std::move(change)) {
        draw_.setUnitRoom();
    }

    void setDrawCheck(bool drawn) override { draw_.setValue(drawn); }
    bool drawCheck() const override { return draw_.value(); }
    void setPointConverter(const PointConverter* converter) override {
        for (PanelPart* part : parts_) part->setPointConverter(converter);
    }
    void notifyPrefsUpdate() override {
        for (PanelPart* part : parts_) part->notifyPrefsUpdate();
    }

  private:
    CheckRow draw_{*this, "Draw:\tDraw or hide this shape"};
};

}  // namespace OverlayEditor
