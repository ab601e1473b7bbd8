#pragma once

class QMenu;
class QWidget;

namespace sandbox {

/// Alt and a letter press a button. When it is called for a window for the first time each button that is
/// shown gets a letter of its text, as long as there are any left, one that begins a word if possible. Later
/// calls only mark these letters again: what a hand has learned may not press another button because
/// something else is selected.
void assignMnemonics(QWidget& window);

/// Gives a menu's items letters, whenever it is opened: those that have a letter of their own keep it, if no
/// item before them has it. When no letter is free any more items share one: it goes from one to the next.
void keepMnemonics(QMenu& menu);

/// Presses the button of this text, if there is one that can be pressed, after what was typed has been handed
/// over. \return whether there was
bool pressButton(QWidget& window, const char* text);

}  // namespace sandbox
