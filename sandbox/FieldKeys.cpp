#include "sandbox/FieldKeys.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <optional>

namespace sandbox {

namespace {

/// A place where the user writes.
struct Field {
    bool editable = false;
    bool pending = false;  ///< holds something typed that was not taken over yet
};

std::optional<Field> fieldOf(const QWidget& widget) {
    const auto* line = qobject_cast<const QLineEdit*>(&widget);
    if (!line && qobject_cast<const QAbstractSpinBox*>(&widget)) line = widget.findChild<QLineEdit*>();
    if (line) return Field{!line->isReadOnly(), line->isModified()};
    if (const auto* text = qobject_cast<const QTextEdit*>(&widget)) return Field{!text->isReadOnly(), true};
    if (const auto* text = qobject_cast<const QPlainTextEdit*>(&widget))
        return Field{!text->isReadOnly(), true};
    return std::nullopt;
}

bool isEnter(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

bool isUndoing(const QKeyEvent& key) {
    return key.matches(QKeySequence::Undo) || key.matches(QKeySequence::Redo) ||
           (key.key() == Qt::Key_Y && key.modifiers() == Qt::ControlModifier);
}

bool writes(const QKeyEvent& key) {
    const auto command = key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    switch (key.key()) {
        case Qt::Key_Backspace:
        case Qt::Key_Delete:
        case Qt::Key_Home:
        case Qt::Key_End:
        case Qt::Key_Left:
        case Qt::Key_Right:
            return !(command & (Qt::AltModifier | Qt::MetaModifier));
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
        case Qt::Key_Up:
        case Qt::Key_Down:
            return !command;
        default:
            break;
    }
    for (const auto standard :
         {QKeySequence::Copy, QKeySequence::Cut, QKeySequence::Paste, QKeySequence::SelectAll})
        if (key.matches(standard)) return true;
    return !command && !key.text().isEmpty() && key.text().front().isPrint();
}

enum class Claim { Own, Pass, Undecided };

Claim claim(const QWidget& widget, const QKeyEvent& key) {
    const std::optional<Field> field = fieldOf(widget);
    if (field && field->editable) {
        if (isUndoing(key)) return field->pending ? Claim::Own : Claim::Pass;
        return writes(key) ? Claim::Own : Claim::Undecided;
    }
    // Enter chooses what is selected in a list.
    if (qobject_cast<const QAbstractItemView*>(&widget) && isEnter(key.key())) return Claim::Own;
    return Claim::Undecided;
}

}  // namespace

FieldKeys::FieldKeys() {
    QCoreApplication::instance()->installEventFilter(this);
}

bool FieldKeys::eventFilter(QObject* watched, QEvent* event) {
    // A button that is pressed by its letter takes no focus: what was typed would not be handed over first.
    if (event->type() == QEvent::Shortcut && qobject_cast<QAbstractButton*>(watched))
        if (QWidget* focused = QApplication::focusWidget(); focused && fieldOf(*focused))
            static_cast<QWidget*>(watched)->setFocus(Qt::ShortcutFocusReason);
    if (event->type() != QEvent::ShortcutOverride) return false;
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget) return false;
    if (QApplication::activePopupWidget()) {
        // Its own, but it must see it: a list that has popped up chooses by this event.
        event->accept();
        return false;
    }
    switch (claim(*widget, static_cast<QKeyEvent&>(*event))) {
        case Claim::Own:
            event->accept();
            return true;
        case Claim::Pass:
            event->ignore();
            return true;
        case Claim::Undecided:
            break;
    }
    return false;
}

}  // namespace sandbox
