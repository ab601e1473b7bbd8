#pragma once

#include <QDialog>
#include <optional>

#include "sandbox/PluginActions.h"

class QKeySequenceEdit;
class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace sandbox {

/// Lists the actions of plug-ins with their keys, and lets the user press others. What it is told holds at
/// once; a key that another command has is named before it is taken.
class KeysDialog : public QDialog {
    Q_OBJECT

  public:
    KeysDialog(PluginActions& actions, QWidget* parent);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void list();
    void showSelected();
    void judge();
    void add();
    std::optional<PluginActions::Entry> selected() const;
    QKeySequence pressed() const;

    PluginActions& actions_;
    QTreeWidget* list_;
    QKeySequenceEdit* keys_;
    QLabel* clash_;
    QPushButton* add_;
    QPushButton* clear_;
    QPushButton* reset_;
};

}  // namespace sandbox
