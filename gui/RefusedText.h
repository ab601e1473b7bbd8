#pragma once

#include <optional>
#include <string>

#include "pi/PIWindow.h"

namespace OverlayEditor {

/// What becomes of a text that a field does not take: it stays, marked, until it is corrected or the field is
/// left once more. Where the host can mark nothing it goes at once, as a field that shows what does not hold
/// would lie.
class RefusedText {
  public:
    /// \param field outlives this
    explicit RefusedText(PIGUI::PIWindow& field) : field_(field) {}

    /// Whether the text that the user hands over is the one that was refused, once more.
    bool is(const std::string& text) const { return text_ == text; }
    bool stands() const { return text_.has_value(); }
    /// \return whether the text stays
    bool keep(const std::string& text) {
        if (field_.setMarked(true))
            text_ = text;
        else
            text_.reset();
        return stands();
    }
    void forget() {
        if (text_) field_.setMarked(false);
        text_.reset();
    }

  private:
    PIGUI::PIWindow& field_;
    std::optional<std::string> text_;
};

}  // namespace OverlayEditor
