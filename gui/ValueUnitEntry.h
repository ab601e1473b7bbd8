#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "model/Panels.h"
#include "model/Preferences.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// A value with its unit: three cells of a panel's table, the caption, the field and the unit's text. The
/// field shows the value in the user's units and precision, while the entry keeps all of its digits. Values
/// are metres or radians.
class ValueUnitEntry {
  public:
    /// Radius and Size are ranges too. A radius is above 0, a size of either sign; neither reaches farther
    /// than half way round the earth. A range or an altitude is refused beyond a million kilometres.
    enum class Quantity { Range, Radius, Size, Altitude, Angle, Latitude, Longitude };

    /// \param table of three columns; must outlive the entry
    /// \param change called after each edit of the user's that gave a value
    ValueUnitEntry(PIGUI::PICanvas& table, const std::string& caption, Quantity quantity,
                   const Preferences& preferences, PanelChange change);
    ~ValueUnitEntry() { callbacks_.disconnect(); }
    ValueUnitEntry(const ValueUnitEntry&) = delete;
    ValueUnitEntry& operator=(const ValueUnitEntry&) = delete;

    /// Shows a value; what the user typed before no longer counts as an edit.
    void setValue(double value);
    /// The value that the user typed since the last setValue; nothing when there was no edit.
    std::optional<double> edited() const { return edited_ ? std::optional(value_) : std::nullopt; }

    /// The value with all its digits, edited or not.
    double value() const { return value_; }

    /// Asked about every value that is typed: why it cannot be taken, empty when it can.
    using Check = std::function<std::string_view(double)>;
    void setCheck(Check check) { check_ = std::move(check); }

    /// Units or precision changed: the unit's text and the value are shown anew.
    void notifyPrefsUpdate();
    void setShown(bool shown);
    void setEnabled(bool enabled) { field_.setEnabled(enabled); }

    /// The field was edited. Text that is no value of this kind is reported, and the field shows its
    /// value again.
    int onCmdEdit(PIObject* sender, void* data);

  private:
    std::string format_() const;
    int parse_(const std::string& text, double& value, std::string& error) const;
    std::string unit_() const;

    Quantity quantity_;
    const Preferences& preferences_;
    PanelChange change_;
    Check check_;
    std::string name_;
    double value_ = 0.0;
    bool edited_ = false;
    std::string shownText_;
    CallbackList<ValueUnitEntry> callbacks_{this};
    PIGUI::PILabel caption_;
    PIGUI::PITextField field_;
    PIGUI::PILabel unitLabel_;
};

}  // namespace OverlayEditor
