#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "common/Notify.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// What the editor had to say since the user's last command, at the lower edge of the dialog: the worst of
/// it, and how much more there is, which the tooltip tells. The host's log has all, but the dialog may cover
/// it. When there is nothing to say, it shows what lost shapes wait for an answer.
class MessageBoard {
  public:
    /// \param onAnswer called when the button behind the message is pressed
    /// \param onCancel the same with the one behind what is under way
    /// \param onRecover,onDiscard the same with the two behind lost shapes
    MessageBoard(PIGUI::PICanvas* parent, FunctorTwoParams__* onAnswer, FunctorTwoParams__* onCancel,
                 FunctorTwoParams__* onRecover, FunctorTwoParams__* onDiscard);
    MessageBoard(const MessageBoard&) = delete;
    MessageBoard& operator=(const MessageBoard&) = delete;

    void hear(halNotify::Severity severity, const std::string& text);
    /// The message that was said last gets its button, until a later command's.
    void offer(const std::string& caption);
    void clear();
    /// Tells of lost shapes until another text, or an empty one, takes its place. What is said while they are
    /// looked for, of others that cannot be read, hides none that were found.
    /// \param look looks for them, and gives the text
    void tellLost(const std::function<std::string()>& look);
    /// What is under way, in place of all else until it is over, which an empty text tells.
    void tellProgress(const std::string& text);
    /// The user's next command: what was said goes at once. But one click leaves a field, and is a command by
    /// itself: what the field has refused stays over the command that follows.
    /// \param sender as countCommand has it
    void commanded(const PIObject* sender);
    /// Called when what was said is over; empty for nobody.
    void setOverListener(std::function<void()> over) { over_ = std::move(over); }

  private:
    struct Line {
        halNotify::Severity severity;
        /// Whether the button is its answer.
        bool answered = false;
        /// Whether it was said while lost shapes were looked for.
        bool aside = false;
        std::string text;
    };
    void show_();

    std::vector<Line> lines_;
    std::string lost_;
    bool tellsLost_ = false;
    bool looking_ = false;
    std::string progress_;
    std::function<void()> over_;
    PIGUI::PIHorizontalFrame row_;
    PIGUI::PILabel text_;
    PIGUI::PIButton answer_;
    PIGUI::PIButton cancel_;
    PIGUI::PIButton recover_;
    PIGUI::PIButton discard_;
};

}  // namespace OverlayEditor
