#pragma once

#include <QMainWindow>
#include <cstdint>
#include <vector>

class QLabel;
class QMenu;
class QPlainTextEdit;
class QTreeWidget;

namespace sandbox {

class GlobeView;
class Log;
struct LogEntry;

/// The host's window: the globe, menus, the panels of overlays and messages, the status bar. It holds no
/// state of its own and only says what the user asked for.
class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    /// A line of the overlay panel.
    struct OverlayRow {
        void* handle = nullptr;
        QString name;
        QString detail;
        bool shown = true;
    };

    explicit MainWindow(const Log& log);

    GlobeView& view() { return *view_; }
    QMenu& pluginMenu() { return *pluginMenu_; }
    QMenu& actionsMenu() { return *actionsMenu_; }
    QTreeWidget& overlayList() { return *overlayList_; }

    void setOverlays(const std::vector<OverlayRow>& rows);
    /// The text of the status bar about the cursor and the camera.
    QString statusText() const;

  signals:
    void openOverlayRequested();
    void savePictureRequested();
    void addPlatformRequested();
    void clearScenarioRequested();
    void clockToggled(bool running);
    void overlayShownChanged(void* handle, bool shown);
    void overlayMenuRequested(const std::vector<void*>& handles, const QPoint& globalPosition);
    /// The window is about to close.
    void closing();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void buildMenus();
    void buildPanels(const Log& log);
    void appendLogEntry(const LogEntry& entry);
    void showCursor(bool onEarth, double latitude, double longitude);
    void showRange();

    GlobeView* view_;
    QMenu* pluginMenu_ = nullptr;
    QMenu* actionsMenu_ = nullptr;
    QTreeWidget* overlayList_ = nullptr;
    QPlainTextEdit* logText_ = nullptr;
    QLabel* positionLabel_ = nullptr;
    QLabel* rangeLabel_ = nullptr;
};

}  // namespace sandbox
