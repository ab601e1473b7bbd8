#include "sandbox/script/ScriptWidgets.h"

#include <QApplication>
#include <QColorDialog>
#include <QContextMenuEvent>
#include <QItemSelectionModel>
#include <QMenuBar>
#include <QScreen>
#include <QWheelEvent>

#include "sandbox/Host.h"
#include "sandbox/OverlayPanel.h"
#include "sandbox/script/Gestures.h"
#include "sandbox/script/ScriptRun.h"
#include "sandbox/widgets/Controls.h"
#include "sandbox/widgets/ListWidget.h"

namespace sandbox {

namespace {

template <typename Kind>
bool is(const HostWidget& widget) {
    return dynamic_cast<const Kind*>(&widget) != nullptr;
}

bool isButton(const HostWidget& widget) {
    return is<ButtonWidget>(widget);
}

bool isField(const HostWidget& widget) {
    return is<TextFieldWidget>(widget) || is<SpinnerWidget>(widget);
}

/// Something that a person works with, not a text or a container.
bool isControl(const HostWidget& widget) {
    return !is<ContainerWidget>(widget) && !is<LabelWidget>(widget);
}

/// What shows a value of its own, apart from its caption.
bool showsValue(const HostWidget& widget) {
    return isControl(widget) && !isButton(widget);
}

void requireEnabled(const HostWidget& widget, const QString& path) {
    if (!widget.isEnabled()) throw ScriptError{QString("\"%1\" is disabled").arg(path)};
}

/// A place of a button that is sure to be on it, also when the layout made it wide.
QPoint handleOf(const ButtonWidget& button) {
    const QRect area = button.widget()->rect();
    return button.style() == ButtonWidget::Style::Push ? area.center() : QPoint(8, area.center().y());
}

QColor readColor(const QString& text) {
    bool good = false;
    const QString digits =
        text.startsWith("0x") || text.startsWith('#') ? text.mid(text[0] == '#' ? 1 : 2) : text;
    const std::uint32_t rgba = digits.size() == 8 ? digits.toUInt(&good, 16) : 0;
    if (!good) throw ScriptError{QString("\"%1\" is no colour; expected 0xRRGGBBAA").arg(text)};
    return QColor(static_cast<int>(rgba >> 24), static_cast<int>(rgba >> 16 & 255),
                  static_cast<int>(rgba >> 8 & 255), static_cast<int>(rgba & 255));
}

QModelIndex overlayRow(const OverlayPanel& panel, const QString& name) {
    if (const QModelIndex row = panel.findOverlay(name); row.isValid()) return row;
    QStringList there;
    for (const QModelIndex& row : panel.rows().overlays()) there << row.data().toString();
    throw ScriptError{
        QString("the overlay panel shows no single \"%1\", but: %2").arg(name, there.join(", "))};
}

}  // namespace

WidgetFinder ScriptWidgets::finder(const QString& title) const {
    return {host().handles(), title};
}

void ScriptWidgets::menu(const QStringList& path) {
    step([&] {
        if (path.size() < 2) throw ScriptError{"menu() needs the menu's name and the item's text"};
        gestures::chooseFromMenuBar(*host().window().menuBar(), path);
    });
}

void ScriptWidgets::menuPicture(const QString& menu, const QString& path) {
    step([&] {
        QMenu& opened = gestures::openMenu(*host().window().menuBar(), menu);
        const bool saved = opened.grab().save(path);
        opened.close();
        if (!saved) throw ScriptError{QString("%1 could not be written").arg(path)};
    });
}

QVariantList ScriptWidgets::menuItems(const QString& menu) {
    return step([&] {
        for (const QAction* entry : host().window().menuBar()->actions()) {
            if (gestures::shownText(*entry) != menu || !entry->menu()) continue;
            emit entry->menu()->aboutToShow();
            QVariantList items;
            for (const QAction* item : entry->menu()->actions()) {
                if (!item->isVisible() || item->isSeparator()) continue;
                const QKeySequence letter = QKeySequence::mnemonic(item->text());
                items << QVariantMap{{"text", gestures::shownText(*item)},
                                     {"letter", letter.toString().section('+', -1)},
                                     {"enabled", item->isEnabled()},
                                     {"checked", item->isChecked()},
                                     {"icon", !item->icon().isNull()}};
            }
            return items;
        }
        throw ScriptError{QString("there is no menu \"%1\"").arg(menu)};
    });
}

void ScriptWidgets::overlayMenu(const QStringList& overlays, const QStringList& path) {
    step([&] {
        run().settle();
        OverlayPanel& list = host().window().overlayPanel();
        QPoint place(4, list.viewport()->height() - 4);
        list.clearSelection();
        Qt::KeyboardModifiers modifiers;
        for (const QString& name : overlays) {
            const QModelIndex row = overlayRow(list, name);
            gestures::clickIndex(list, row, modifiers);
            modifiers = Qt::ControlModifier;
            place = list.visualRect(row).center();
        }
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, list.viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(list.viewport(), &event);
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu) throw ScriptError{"the context menu did not open"};
        try {
            gestures::chooseFromMenu(*menu, path);
        } catch (const ScriptError&) {
            menu->close();
            throw;
        }
    });
}

void ScriptWidgets::tickOverlay(const QString& overlay, bool shown) {
    step([&] {
        run().settle();
        OverlayPanel& list = host().window().overlayPanel();
        const QModelIndex row = overlayRow(list, overlay);
        if ((row.data(Qt::CheckStateRole) == Qt::Checked) == shown) return;
        list.setCurrentIndex(row);
        gestures::key(list, Qt::Key_Space);
    });
}

QString ScriptWidgets::selectedShape() {
    return step([&] {
        const QItemSelectionModel* selected = host().window().overlayPanel().selectionModel();
        const QModelIndex row = selected->selectedIndexes().value(0);
        if (!row.parent().isValid()) return QString();
        return row.parent().data().toString() + ": " + row.data().toString();
    });
}

QStringList ScriptWidgets::dialogs() {
    return step([&] {
        QStringList titles;
        for (const DialogBox* dialog : finder({}).dialogs()) titles << dialog->caption();
        return titles;
    });
}

void ScriptWidgets::closeDialog(const QString& title) {
    step([&] { finder(title).dialog().widget()->close(); });
}

void ScriptWidgets::moveDialog(const QString& title, int x, int y) {
    step([&] { finder(title).dialog().widget()->move(host().window().mapToGlobal(QPoint(x, y))); });
}

QVariantMap ScriptWidgets::geometry(const QString& title) {
    return step([&] {
        run().settle();
        const QWidget* window = finder(title).dialog().widget();
        const QRect place = window->frameGeometry();
        const QRect screen = window->screen()->availableGeometry();
        return QVariantMap{{"x", place.x()},
                           {"y", place.y()},
                           {"width", place.width()},
                           {"height", place.height()},
                           {"screenWidth", screen.width()},
                           {"screenHeight", screen.height()}};
    });
}

QStringList ScriptWidgets::captions(const QString& title) {
    return step([&] { return finder(title).captions(); });
}

void ScriptWidgets::press(const QString& title, const QString& path) {
    step([&] {
        auto& button = static_cast<ButtonWidget&>(finder(title).find(path, isButton, "button"));
        requireEnabled(button, path);
        gestures::click(*button.widget(), handleOf(button));
    });
}

void ScriptWidgets::setChecked(const QString& title, const QString& path, bool checked) {
    step([&] {
        auto& button = static_cast<ButtonWidget&>(finder(title).find(path, isButton, "button"));
        if (button.checked() == checked) return;
        requireEnabled(button, path);
        gestures::click(*button.widget(), handleOf(button));
    });
}

void ScriptWidgets::fill(const QString& title, const QString& path, const QString& text, bool enter) {
    step([&] {
        HostWidget& field = finder(title).find(path, isField, "field");
        requireEnabled(field, path);
        const auto* line = qobject_cast<QLineEdit*>(field.widget());
        if (line && line->isReadOnly()) throw ScriptError{QString("\"%1\" is read-only").arg(path)};
        gestures::replaceText(*field.widget(), text);
        if (enter) gestures::key(*field.widget(), Qt::Key_Return);
    });
}

void ScriptWidgets::key(const QString& title, const QString& path, const QString& key) {
    step([&] {
        QWidget& widget = *finder(title).find(path, isControl, "control").widget();
        widget.setFocus();
        if (key.startsWith("Wheel")) {
            const QPointF place = widget.rect().center();
            QWheelEvent event(place, widget.mapToGlobal(place), {}, {0, key == "WheelUp" ? 120 : -120},
                              Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(&widget, &event);
            return;
        }
        const QKeySequence sequence(key);
        if (sequence.count() != 1) throw ScriptError{QString("\"%1\" is no key").arg(key)};
        gestures::key(widget, sequence[0].key());
    });
}

void ScriptWidgets::leave(const QString& title, const QString& path) {
    step([&] {
        const WidgetFinder found = finder(title);
        HostWidget* widget = found.findOptional(path, isField, "field");
        if (!widget) widget = &found.find(path, isControl, "control");
        gestures::key(*widget->widget(), Qt::Key_Tab);
    });
}

void ScriptWidgets::choose(const QString& title, const QString& path, const QString& option) {
    step([&] {
        auto& menu =
            static_cast<OptionMenuWidget&>(finder(title).find(path, is<OptionMenuWidget>, "option menu"));
        requireEnabled(menu, path);
        const int index = menu.menu()->findText(option);
        if (index < 0) {
            throw ScriptError{QString("\"%1\" has no option \"%2\", but: %3")
                                  .arg(path, option, options(title, path).join(", "))};
        }
        gestures::chooseOption(*menu.menu(), index);
    });
}

void ScriptWidgets::color(const QString& title, const QString& path, const QString& rgba) {
    step([&] {
        HostWidget& well = finder(title).find(path, is<ColorWellWidget>, "colour well");
        requireEnabled(well, path);
        const QColor color = readColor(rgba);
        gestures::click(*well.widget());
        auto* dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
        if (!dialog) throw ScriptError{"the colour dialog did not open"};
        gestures::enterColor(*dialog, color);
    });
}

void ScriptWidgets::select(const QString& title, const QString& path, const QJSValue& item, bool add,
                           bool twice) {
    step([&] {
        const WidgetFinder found = finder(title);
        auto& list = static_cast<ListWidget&>(path.isEmpty() ? found.findOnly(is<ListWidget>, "list")
                                                             : found.find(path, is<ListWidget>, "list"));
        requireEnabled(list, path);
        int index = item.isNumber() ? item.toInt() : -1;
        for (int i = 0; index < 0 && i < list.count(); ++i)
            if (list.itemText(i) == item.toString() ||
                list.itemText(i).section('\t', 0, 0) == item.toString())
                index = i;
        if (!list.isIndex(index))
            throw ScriptError{QString("the list has no item \"%1\"").arg(item.toString())};
        gestures::clickItem(*list.list(), index, add ? Qt::ControlModifier : Qt::NoModifier);
        if (twice) gestures::key(*list.list(), Qt::Key_Return);
    });
}

bool ScriptWidgets::isShown(const QString& title, const QString& path) {
    return step([&] {
        const WidgetFinder found = finder(title);
        if (found.dialogs().empty()) return false;
        return found.findOptional(
                   path, [](const HostWidget&) { return true; }, "widget") != nullptr;
    });
}

bool ScriptWidgets::isEnabled(const QString& title, const QString& path) {
    return step([&] { return finder(title).find(path, isControl, "control").isEnabled(); });
}

bool ScriptWidgets::hasFocus(const QString& title, const QString& path) {
    return step([&] {
        const QWidget* widget = finder(title).find(path, isControl, "control").widget();
        const QWidget* focused = QApplication::focusWidget();
        return focused && (focused == widget || widget->isAncestorOf(focused));
    });
}

bool ScriptWidgets::isChecked(const QString& title, const QString& path) {
    return step([&] { return finder(title).find(path, isButton, "button").checked().value_or(false); });
}

QString ScriptWidgets::value(const QString& title, const QString& path) {
    return step([&] {
        const WidgetFinder found = finder(title);
        if (const HostWidget* control = found.findOptional(path, showsValue, "control"))
            return control->text().value_or(QString());
        return found
            .find(
                path, [](const HostWidget& widget) { return widget.text().has_value(); }, "widget")
            .text()
            .value_or(QString());
    });
}

QVariantMap ScriptWidgets::place(const QString& title, const QString& path) {
    return step([&] {
        run().settle();
        const WidgetFinder found = finder(title);
        const HostWidget* widget = found.findOptional(path, isControl, "control");
        if (!widget) widget = &found.find(path, is<LabelWidget>, "label");
        const QRect place(widget->widget()->mapTo(widget->widget()->window(), QPoint(0, 0)),
                          widget->widget()->size());
        return QVariantMap{
            {"x", place.x()}, {"y", place.y()}, {"width", place.width()}, {"height", place.height()}};
    });
}

QString ScriptWidgets::tooltip(const QString& title, const QString& path) {
    return step([&] {
        const WidgetFinder found = finder(title);
        const HostWidget* control = found.findOptional(path, isControl, "control");
        if (control && !control->widget()->toolTip().isEmpty()) return control->widget()->toolTip();
        return found.find(path, is<LabelWidget>, "label").widget()->toolTip();
    });
}

QStringList ScriptWidgets::options(const QString& title, const QString& path) {
    return step([&] {
        const auto& menu =
            static_cast<OptionMenuWidget&>(finder(title).find(path, is<OptionMenuWidget>, "option menu"));
        QStringList texts;
        for (int i = 0; i < menu.menu()->count(); ++i) texts << menu.menu()->itemText(i);
        return texts;
    });
}

QStringList ScriptWidgets::items(const QString& title, const QString& path) {
    return step([&] {
        const WidgetFinder found = finder(title);
        const auto& list =
            static_cast<ListWidget&>(path.isEmpty() ? found.findOnly(is<ListWidget>, "list")
                                                    : found.find(path, is<ListWidget>, "list"));
        QStringList texts;
        for (int i = 0; i < list.count(); ++i) texts << list.itemText(i);
        return texts;
    });
}

int ScriptWidgets::selected(const QString& title, const QString& path) {
    return step([&] {
        const WidgetFinder found = finder(title);
        const auto& list =
            static_cast<ListWidget&>(path.isEmpty() ? found.findOnly(is<ListWidget>, "list")
                                                    : found.find(path, is<ListWidget>, "list"));
        return list.selected();
    });
}

}  // namespace sandbox
