#include "sandbox/script/Gestures.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QTreeView>

#include "sandbox/script/ScriptError.h"
#include "sandbox/widgets/Caption.h"

namespace sandbox::gestures {

namespace {

void mouse(QWidget& widget, QEvent::Type type, QPoint place, Qt::MouseButton button, Qt::MouseButtons held,
           Qt::KeyboardModifiers modifiers) {
    QMouseEvent event(type, place, widget.mapToGlobal(QPointF(place)), button, held, modifiers);
    QCoreApplication::sendEvent(&widget, &event);
}

QAction* findItem(const QList<QAction*>& actions, const QString& text) {
    QStringList there;
    for (QAction* action : actions) {
        if (!action->isVisible() || action->isSeparator()) continue;
        if (shownText(*action) == text) {
            if (!action->isEnabled()) throw ScriptError{QString("menu item \"%1\" is disabled").arg(text)};
            return action;
        }
        there << '"' + shownText(*action) + '"';
    }
    throw ScriptError{QString("no menu item \"%1\"; there are %2").arg(text, there.join(", "))};
}

}  // namespace

QString shownText(const QAction& action) {
    return Caption::plain(action.text().section('\t', 0, 0));
}

void click(QWidget& widget) {
    click(widget, widget.rect().center());
}

void click(QWidget& widget, QPoint place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
    if (!widget.isVisible()) throw ScriptError{"a hidden widget cannot be clicked"};
    for (QWidget* outer = widget.parentWidget(); outer; outer = outer->parentWidget())
        if (auto* scroll = qobject_cast<QScrollArea*>(outer)) scroll->ensureWidgetVisible(&widget);
    const QPointer<QWidget> alive(&widget);
    // Without a window manager no click activates a window, and no field would lose the focus.
    QWidget* const window = widget.window();
    if (!window->isActiveWindow() && window->windowType() != Qt::Popup) QApplication::setActiveWindow(window);
    if (widget.focusPolicy() & Qt::ClickFocus) widget.setFocus(Qt::MouseFocusReason);
    mouse(widget, QEvent::MouseButtonPress, place, button, button, modifiers);
    if (alive) mouse(widget, QEvent::MouseButtonRelease, place, button, Qt::NoButton, modifiers);
}

void key(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    const QPointer<QWidget> alive(&widget);
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, modifiers);
        if (alive) QCoreApplication::sendEvent(alive, &event);
    }
}

void type(QWidget& widget, const QString& text) {
    for (const QChar letter : text) {
        const int code = letter.unicode() < 128 ? letter.toUpper().unicode() : int{Qt::Key_unknown};
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, code, {}, QString(letter));
            QCoreApplication::sendEvent(&widget, &event);
        }
    }
}

void commit(QWidget& widget, const QString& text) {
    QInputMethodEvent event;
    event.setCommitString(text);
    QCoreApplication::sendEvent(&widget, &event);
}

void replaceText(QWidget& field, const QString& text) {
    click(field);
    key(field, Qt::Key_A, Qt::ControlModifier);
    if (text.isEmpty())
        key(field, Qt::Key_Delete);
    else
        type(field, text);
}

QMenu& openMenu(QMenuBar& bar, const QString& name) {
    QAction* action = findItem(bar.actions(), name);
    click(bar, bar.actionGeometry(action).center());
    QMenu* menu = action->menu();
    if (!menu || !menu->isVisible()) throw ScriptError{QString("menu \"%1\" did not open").arg(name)};
    return *menu;
}

void chooseFromMenuBar(QMenuBar& bar, const QStringList& path) {
    QMenu& menu = openMenu(bar, path.first());
    try {
        chooseFromMenu(menu, path.mid(1));
    } catch (const ScriptError&) {
        menu.close();
        throw;
    }
}

void chooseFromMenu(QMenu& menu, const QStringList& path) {
    QAction* action = findItem(menu.actions(), path.first());
    const QPoint place = menu.actionGeometry(action).center();
    if (path.size() == 1) {
        mouse(menu, QEvent::MouseMove, place, Qt::NoButton, Qt::NoButton, {});
        click(menu, place);
        return;
    }
    if (!action->menu()) throw ScriptError{QString("\"%1\" is no submenu").arg(path.first())};
    menu.setActiveAction(action);
    if (!action->menu()->isVisible()) click(menu, place);
    chooseFromMenu(*action->menu(), path.mid(1));
}

void chooseOption(QComboBox& menu, int index) {
    click(menu);
    QAbstractItemView* list = menu.view();
    if (!list->isVisible()) menu.showPopup();
    key(*list, Qt::Key_Home);
    for (int i = 0; i < index; ++i) key(*list, Qt::Key_Down);
    if (list->currentIndex().row() != index)
        list->setCurrentIndex(menu.model()->index(index, menu.modelColumn()));
    key(*list, Qt::Key_Return);
}

namespace {}  // namespace

void clickIndex(QTreeView& list, const QModelIndex& index, Qt::KeyboardModifiers modifiers) {
    list.scrollTo(index);
    QRect place = list.visualRect(index);
    place.setWidth(std::min(place.width(), list.columnWidth(0)));
    list.setFocus(Qt::MouseFocusReason);
    click(*list.viewport(), place.center(), Qt::LeftButton, modifiers);
}

void clickItem(QTreeView& list, int row, Qt::KeyboardModifiers modifiers) {
    const QModelIndex index = list.model()->index(row, 0);
    if (!index.isValid()) throw ScriptError{QString("the list has no item %1").arg(row)};
    clickIndex(list, index, modifiers);
}

void enterColor(QColorDialog& dialog, const QColor& color) {
    QLineEdit* name = nullptr;
    for (auto* field : dialog.findChildren<QLineEdit*>())
        if (!qobject_cast<QAbstractSpinBox*>(field->parentWidget())) name = field;
    const auto* buttons = dialog.findChild<QDialogButtonBox*>();
    if (!name || !buttons) throw ScriptError{"the colour dialog's parts were not found"};
    replaceText(*name, color.name());
    key(*name, Qt::Key_Tab);
    if (dialog.testOption(QColorDialog::ShowAlphaChannel)) {
        const auto spinners = dialog.findChildren<QSpinBox*>();
        QSpinBox* alpha = spinners.last();
        replaceText(*alpha, QString::number(color.alpha()));
        key(*alpha, Qt::Key_Tab);
    }
    click(*buttons->button(QDialogButtonBox::Ok));
}

}  // namespace sandbox::gestures
