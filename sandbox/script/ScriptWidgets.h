#pragma once

#include <QJSValue>
#include <QStringList>
#include <QVariant>

#include "sandbox/script/ScriptObject.h"
#include "sandbox/script/WidgetFinder.h"

namespace sandbox {

/// A script's hands and eyes for menus and dialogs. The first argument of most functions is the title of
/// the dialog that is meant, empty for all that are shown.
class ScriptWidgets : public ScriptObject {
    Q_OBJECT

  public:
    using ScriptObject::ScriptObject;

    Q_INVOKABLE void menu(const QStringList& path);
    /// Opens a menu of the menu bar, saves a picture of it and closes it.
    Q_INVOKABLE void menuPicture(const QString& menu, const QString& path);
    /// Items of a menu as objects { text, enabled, checked }.
    Q_INVOKABLE QVariantList menuItems(const QString& menu);
    Q_INVOKABLE void overlayMenu(const QStringList& overlays, const QStringList& path);
    Q_INVOKABLE void tickOverlay(const QString& overlay, bool shown);
    Q_INVOKABLE QString selectedShape();

    Q_INVOKABLE QStringList dialogs();
    Q_INVOKABLE void closeDialog(const QString& title);
    Q_INVOKABLE void moveDialog(const QString& title, int x, int y);
    /// Where a dialog stands and how much room there is: { x, y, width, height, screenWidth, screenHeight }.
    Q_INVOKABLE QVariantMap geometry(const QString& title);
    /// Where a widget stands in its dialog: { x, y, width, height }.
    Q_INVOKABLE QVariantMap place(const QString& title, const QString& path);
    Q_INVOKABLE QStringList captions(const QString& title);

    Q_INVOKABLE void press(const QString& title, const QString& path);
    Q_INVOKABLE void setChecked(const QString& title, const QString& path, bool checked);
    Q_INVOKABLE void fill(const QString& title, const QString& path, const QString& text, bool enter);
    Q_INVOKABLE void leave(const QString& title, const QString& path);
    /// A key, named as Qt names it, or a notch of the wheel ("WheelUp", "WheelDown"), in a control.
    Q_INVOKABLE void key(const QString& title, const QString& path, const QString& key);
    Q_INVOKABLE void choose(const QString& title, const QString& path, const QString& option);
    Q_INVOKABLE void color(const QString& title, const QString& path, const QString& rgba);
    Q_INVOKABLE void select(const QString& title, const QString& path, const QJSValue& item, bool add,
                            bool twice);

    Q_INVOKABLE bool isShown(const QString& title, const QString& path);
    Q_INVOKABLE bool isEnabled(const QString& title, const QString& path);
    Q_INVOKABLE bool hasFocus(const QString& title, const QString& path);
    Q_INVOKABLE bool isChecked(const QString& title, const QString& path);
    Q_INVOKABLE QString value(const QString& title, const QString& path);
    Q_INVOKABLE QString tooltip(const QString& title, const QString& path);
    Q_INVOKABLE QStringList options(const QString& title, const QString& path);
    Q_INVOKABLE QStringList items(const QString& title, const QString& path);
    Q_INVOKABLE int selected(const QString& title, const QString& path);

  private:
    WidgetFinder finder(const QString& title) const;
};

}  // namespace sandbox
