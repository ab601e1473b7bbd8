#pragma once

#include <QObject>

namespace sandbox {

class HandleRegistry;
class MainWindow;
class Settings;

/// Where the windows were, so that they can be there again: the program's own with its panels, and which
/// dialogs of plug-ins were open. What opens a dialog is the plug-in's menu item of the same name; where it
/// stands then it knows itself (`DialogBox`).
class WindowPlaces : public QObject {
    Q_OBJECT

  public:
    /// Watches the application's windows while it lives.
    WindowPlaces(MainWindow& window, const HandleRegistry& handles, Settings& settings);

    void keep();
    void restoreWindow();
    void reopenDialogs();

  signals:
    void changed();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    MainWindow& window_;
    const HandleRegistry& handles_;
    Settings& settings_;
};

}  // namespace sandbox
