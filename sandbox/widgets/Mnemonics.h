#pragma once

class QMenu;
class QWidget;

namespace sandbox {

/// Gives each button that is shown in a window a letter of its text, as long as there are any left: Alt and
/// the letter press it. A letter that begins a word is preferred.
void assignMnemonics(QWidget& window);

/// The same for a menu's items, whenever it is opened: those that have a letter of their own keep it, if no
/// item before them has it.
void keepMnemonics(QMenu& menu);

/// Presses the button of this text, if there is one that can be pressed, after what was typed has been handed
/// over. \return whether there was
bool pressButton(QWidget& window, const char* text);

}  // namespace sandbox
