#pragma once

#include <QObject>

class QKeyEvent;
class QWidget;

namespace sandbox {

/// Keeps keys that are bound to actions from being taken from the widget that has the focus and uses them: a
/// text field's letters, Backspace, Delete, Enter and its own undoing, an open menu's all, a list's Enter.
///
/// Ctrl+Z and its like are a field's as long as something stands there that was typed and not taken over yet;
/// after that they are the action's, which undoes what the field did.
///
/// Watches the application while it lives.
class FieldKeys : public QObject {
  public:
    FieldKeys();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace sandbox
