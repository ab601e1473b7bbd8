#include "gui/WholeNumber.h"

#include <sstream>
#include <utility>

#include "common/NumberText.h"
#include "common/Strings.h"

namespace OverlayEditor {

WholeNumber::WholeNumber(PIGUI::PISpinner& spinner, std::string name, int least, int most)
    : spinner_(spinner), name_(std::move(name)), least_(least), most_(most) {
    spinner_.setLimits(least, most);
}

void WholeNumber::show(int value) {
    if (refused_.stands() && value == value_) return;
    refused_.forget();
    value_ = value;
    spinner_.setValue(value);
}

std::optional<int> WholeNumber::take() {
    const auto fits = [this](std::int64_t number) { return number >= least_ && number <= most_; };
    const int number = spinner_.getValueInt();
    // Last, as the wrapper takes what was read last for what stands there.
    std::string text = spinner_.getValueText();
    const auto typed = UTILS::readInteger(text);
    // Emptied, unless it is a host's that tells no text of a spinner.
    const bool nonsense = text.empty() ? number == value_ : !typed || !fits(*typed);
    if (!nonsense && fits(number)) {
        refused_.forget();
        value_ = number;
        return number;
    }
    if (!nonsense) text = std::to_string(number);
    const bool again = refused_.is(text);
    if (!again) {
        std::ostringstream message;
        message << name_ << ": \"" << UTILS::excerpt(text) << "\" is no whole number from " << least_
                << " to " << most_ << "; still " << value_;
        if (refused_.refuse(text, message.str())) return std::nullopt;
    }
    refused_.forget();
    spinner_.setValue(value_);
    return std::nullopt;
}

}  // namespace OverlayEditor
