#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "pi/PIWindow.h"

namespace OverlayEditor {

/// What becomes of a text that a field does not take: it stays, marked, until it is corrected or the field is
/// left once more. Where the host can mark nothing it goes at once, as a field that shows what does not hold
/// would lie.
class RefusedText {
  public:
    /// \param field outlives this
    explicit RefusedText(PIGUI::PIWindow& field) : field_(field) {}
    ~RefusedText();
    RefusedText(const RefusedText&) = delete;
    RefusedText& operator=(const RefusedText&) = delete;

    /// Whether the text that the user hands over is the one that was refused, once more.
    bool is(const std::string& text) const { return text_ == text; }
    bool stands() const { return text_.has_value(); }
    /// \param message what is said of it \return whether the text stays
    bool refuse(const std::string& text, const std::string& message);
    void forget();

    /// Forgets all that stand; their owners show again what holds. \return whether there were any
    static bool forgetAll();
    /// What was said of the texts that stand in fields now.
    static std::vector<std::string> messages();
    /// The command that was refused last, 0 for none, and its field; null once the field is gone.
    static std::uint64_t lastCommand();
    static const PIGUI::PIWindow* lastField();

  private:
    PIGUI::PIWindow& field_;
    std::optional<std::string> text_;
    std::string message_;
};

}  // namespace OverlayEditor
