#pragma once

#include <QObject>

namespace sandbox {

/// Keeps what files, platforms and plug-ins are called from being read as markup, which could open any file:
/// while it lives, labels and tooltips, those of Qt's own dialogs too, show their text as it stands unless
/// they ask for rich text by themselves. Menus, lists and buttons know no markup.
class PlainText final : public QObject {
  public:
    /// Goes with the application.
    PlainText();

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;
};

}  // namespace sandbox
