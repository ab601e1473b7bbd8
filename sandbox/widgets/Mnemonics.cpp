#include "sandbox/widgets/Mnemonics.h"

#include <QAbstractButton>
#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QSet>
#include <QToolButton>
#include <QWidget>

#include "sandbox/widgets/Caption.h"

namespace sandbox {

namespace {

/// The property of a button that has a letter: its text with the mark. Of a window, that letters were given.
constexpr const char* kMark = "mnemonic";

/// Where in the text a free letter stands; -1 for nowhere.
qsizetype freeLetter(const QString& text, const QSet<QChar>& taken) {
    for (const bool first : {true, false})
        for (qsizetype i = 0; i < text.size(); ++i) {
            const bool begins = i == 0 || text[i - 1] == ' ';
            if (begins == first && text[i].isLetter() && text[i].unicode() < 128 &&
                !taken.contains(text[i].toLower()))
                return i;
        }
    return -1;
}

/// The text with its letter marked, which is taken from then on; without a mark when none is free.
QString markedText(const QString& text, QSet<QChar>& taken) {
    const qsizetype at = freeLetter(text, taken);
    if (at < 0) return Caption::escaped(text);
    taken.insert(text[at].toLower());
    return Caption::escaped(text.left(at)) + '&' + Caption::escaped(text.mid(at));
}

}  // namespace

void assignMnemonics(QWidget& window) {
    const bool first = !window.property(kMark).isValid();
    window.setProperty(kMark, true);
    QSet<QChar> taken;
    for (auto* button : window.findChildren<QAbstractButton*>()) {
        if (qobject_cast<QToolButton*>(button)) continue;
        const QString text = Caption::plain(button->text());
        if (first && button->isVisibleTo(&window)) button->setProperty(kMark, markedText(text, taken));
        // A button that has another text now is another command.
        const QString given = button->property(kMark).toString();
        const QString& marked = Caption::plain(given) == text ? given : Caption::escaped(text);
        if (button->text() != marked) button->setText(marked);
    }
}

void assignMnemonics(QMenu& menu) {
    QSet<QChar> taken;
    QList<QAction*> rest;
    for (QAction* action : menu.actions()) {
        const QKeySequence key = QKeySequence::mnemonic(action->text());
        const QChar letter = key.isEmpty() ? QChar() : QChar(key[0].key()).toLower();
        if (!action->isVisible() || action->isSeparator()) continue;
        if (letter.isNull() || taken.contains(letter))
            rest << action;
        else
            taken.insert(letter);
    }
    QSet<QChar> shared;
    for (QAction* action : rest) {
        const QString text = Caption::plain(action->text());
        QString marked = markedText(text, taken);
        // Several with one letter take turns, and Enter chooses; better than none.
        if (!marked.contains('&')) marked = markedText(text, shared);
        if (action->text() != marked) action->setText(marked);
    }
}

void keepMnemonics(QMenu& menu) {
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&menu] { assignMnemonics(menu); });
}

bool pressButton(QWidget& window, const char* text) {
    for (auto* button : window.findChildren<QAbstractButton*>())
        if (button->isVisible() && button->isEnabled() &&
            Caption::plain(button->text()) == QLatin1String(text)) {
            button->setFocus(Qt::ShortcutFocusReason);
            button->click();
            return true;
        }
    return false;
}

}  // namespace sandbox
