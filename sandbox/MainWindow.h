#pragma once

#include <QMainWindow>
#include <cstdint>
#include <vector>

class QLabel;
class QMenu;
class QPushButton;

namespace sandbox {

class GlobeView;
class Log;
class OverlayPanel;
class Scenario;

/// The host's window: the globe, menus, the panels of overlays and messages, the status bar. It holds no
/// state of its own and only says what the user asked for.
class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    MainWindow(const Log& log, const Scenario& scenario);

    GlobeView& view() { return *view_; }
    QMenu& pluginMenu() { return *pluginMenu_; }
    QMenu& actionsMenu() { return *actionsMenu_; }
    OverlayPanel& overlayPanel() { return *overlayPanel_; }

    QMenu& scenarioMenu() { return *scenarioMenu_; }
    QMenu& viewMenu() { return *viewMenu_; }

    /// The files of the "Open Recent" menu, latest first.
    void setRecentFiles(const QStringList& paths);
    /// Tells that a file is being read, so many percent of it, and offers to end that; "" tells of none.
    void showReading(const QString& path, int percent);
    /// The text of the status bar about the cursor and the camera.
    QString statusText() const;

  signals:
    void openOverlayRequested();
    void closeAllRequested();
    void savePictureRequested();
    void printRequested();
    void addPlatformRequested();
    void clearScenarioRequested();
    void openPlatformsRequested();
    /// Files were dropped on the window, or chosen among the recent ones.
    void filesGiven(const QStringList& paths);
    void tracksToggled(bool shown);
    void readingCanceled();
    /// The window is about to close.
    void closing();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    void buildMenus();
    void buildPanels(const Log& log, const Scenario& scenario);
    void showCursor(bool onEarth, double latitude, double longitude);
    void showRange();

    GlobeView* view_;
    QMenu* pluginMenu_ = nullptr;
    QMenu* actionsMenu_ = nullptr;
    QMenu* scenarioMenu_ = nullptr;
    QMenu* viewMenu_ = nullptr;
    QMenu* recentMenu_ = nullptr;
    OverlayPanel* overlayPanel_ = nullptr;
    QPushButton* errorMark_ = nullptr;  ///< while there are errors that nobody has looked at
    int errors_ = 0;
    QLabel* readingLabel_ = nullptr;
    QPushButton* readingCancel_ = nullptr;
    QLabel* positionLabel_ = nullptr;
    QLabel* rangeLabel_ = nullptr;
};

}  // namespace sandbox
