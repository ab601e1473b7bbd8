#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "common/Notify.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// What the editor had to say since the user's last command, at the lower edge of the dialog: the worst of
/// it, and how much more there is, which the tooltip tells. The host's log has all, but the dialog may cover
/// it.
class MessageBoard {
  public:
    /// \param onAnswer called when the button behind the message is pressed
    MessageBoard(PIGUI::PICanvas* parent, FunctorTwoParams__* onAnswer);

    /// Of a later command than the last one: in place of what was said.
    void hear(halNotify::Severity severity, const std::string& text);
    /// The message that was said last gets its button, until a later command's.
    void offer(const std::string& caption);
    void clear();
    /// Called when what was said is over; empty for nobody.
    void setOverListener(std::function<void()> over) { over_ = std::move(over); }
    /// Once a second: what was said before the user's last command goes after a while. What a command says is
    /// to be read also when another follows at once, as when a field is left for a button.
    void tick();

  private:
    struct Line {
        halNotify::Severity severity;
        /// Whether the button is its answer.
        bool answered = false;
        std::string text;
    };
    void show_();

    std::vector<Line> lines_;
    std::function<void()> over_;
    /// The command that said it.
    std::uint64_t command_ = 0;
    int ticks_ = 0;
    PIGUI::PIHorizontalFrame row_;
    PIGUI::PILabel text_;
    PIGUI::PIButton answer_;
};

}  // namespace OverlayEditor
