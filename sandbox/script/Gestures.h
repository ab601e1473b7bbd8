#pragma once

#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QString>
#include <QStringList>
#include <QWidget>

class QColorDialog;
class QComboBox;
class QTreeView;

namespace sandbox::gestures {

/// What hands do, as Qt events. All of them throw ScriptError when the thing cannot be done.

/// A left click; without a place, in the middle.
void click(QWidget& widget);
void click(QWidget& widget, QPoint place, Qt::MouseButton button = Qt::LeftButton,
           Qt::KeyboardModifiers modifiers = {});
void key(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {});
/// Types text, any script of the world.
void type(QWidget& widget, const QString& text);
/// Enters text at once, as an input method or the clipboard does.
void commit(QWidget& widget, const QString& text);
/// Clicks into a field and types over what is there.
void replaceText(QWidget& field, const QString& text);

/// Opens a menu of the menu bar.
QMenu& openMenu(QMenuBar& bar, const QString& name);
/// Opens the menus named by all but the last text and chooses the item named by the last one.
void chooseFromMenuBar(QMenuBar& bar, const QStringList& path);
/// The same in a menu that is open.
void chooseFromMenu(QMenu& menu, const QStringList& path);
void chooseOption(QComboBox& menu, int index);
void clickItem(QTreeView& list, int row, Qt::KeyboardModifiers modifiers = {});
void clickIndex(QTreeView& list, const QModelIndex& index, Qt::KeyboardModifiers modifiers = {});
/// Enters a colour (and its opacity, where the dialog has it) and confirms.
void enterColor(QColorDialog& dialog, const QColor& color);

/// The text that is shown for an action, without the mark of its shortcut.
QString shownText(const QAction& action);

}  // namespace sandbox::gestures
