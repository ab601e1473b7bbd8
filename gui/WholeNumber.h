#pragma once

#include <optional>
#include <string>

#include "gui/RefusedText.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// The number in a spinner, with its limits. What it does not take it tells, with the field's name.
class WholeNumber {
  public:
    /// \param spinner outlives this
    /// \param name of the field, for messages
    WholeNumber(PIGUI::PISpinner& spinner, std::string name, int least, int most);

    /// Also what the spinner cannot show.
    void show(int value);
    int value() const { return value_; }
    /// The user has used the spinner. \return the number, nothing when it is none or no other one
    std::optional<int> take();

  private:
    PIGUI::PISpinner& spinner_;
    std::string name_;
    int least_;
    int most_;
    int value_ = 0;
    RefusedText refused_{spinner_};
};

}  // namespace OverlayEditor
