#pragma once

#include <QObject>
#include <QPoint>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "sandbox/BusyCursor.h"
#include "sandbox/CallTrace.h"
#include "sandbox/FieldKeys.h"
#include "sandbox/HandleRegistry.h"
#include "sandbox/Log.h"
#include "sandbox/MainWindow.h"
#include "sandbox/OverlayFiles.h"
#include "sandbox/PlatformMarkers.h"
#include "sandbox/Plugin.h"
#include "sandbox/PluginActions.h"
#include "sandbox/ServiceTable.h"
#include "sandbox/Settings.h"
#include "sandbox/TrackLines.h"
#include "sandbox/WindowPlaces.h"
#include "sandbox/WorkInTurns.h"
#include "sandbox/scenario/Scenario.h"
#include "sandbox/services/PluginRegistrations.h"

namespace sandbox {

class ClockBar;
class FileDialogs;
class Session;
class UserFiles;
struct PickedShape;
struct ViewMouseEvent;

/// The stand-in host, put together: its parts, the services over them, the plug-ins that use these, and
/// the user's own commands.
class Host : public QObject {
    Q_OBJECT

  public:
    /// \param settingsFile empty for the user's own place
    explicit Host(const QString& settingsFile);
    ~Host() override;

    Log& log() { return log_; }
    Settings& settings() { return settings_; }
    HandleRegistry& handles() { return handles_; }
    ServiceTable& services() { return services_; }
    CallTrace& trace() { return trace_; }
    MainWindow& window() { return window_; }
    GlobeView& view() { return window_.view(); }
    Scenario& scenario() { return scenario_; }
    OverlayFiles& overlays() { return overlays_; }
    FileDialogs& fileDialogs() { return *fileDialogs_; }
    PluginRegistrations& registrations() { return registrations_; }
    PluginActions& actions() { return actions_; }

    /// Loads, initialises and starts a plug-in. Null when it is refused; the log says why.
    Plugin* openPlugin(const std::filesystem::path& path);
    /// Closes the plug-in, drops what it left behind (the log names it), cleans up and unloads.
    /// \return whether the library is gone from the process; the object is in any case
    bool closePlugin(Plugin& plugin);
    void closePlugins();
    /// Closes them as the program dies, and ends it.
    [[noreturn]] void closeWithoutScreen();
    const std::vector<std::unique_ptr<Plugin>>& plugins() const { return plugins_; }

    /// The mouse's place in the view, widget pixels; nothing while it is elsewhere.
    std::optional<QPoint> cursor() const { return cursor_; }
    /// Whether what is shown of the platforms has yet to follow the clock.
    bool followsClock() const { return markers_.follows(); }
    UserFiles& files() { return *files_; }
    Session& session() { return *session_; }
    /// Builds and pops up the menu that a right click in the overlay panel opens.
    void openOverlayMenu(const std::vector<void*>& handles, const QPoint& globalPosition);
    void openPlatformMenu(std::uint64_t id, const QPoint& globalPosition);
    /// Puts the window where it was last time; tells a newcomer how to begin.
    void greet();
    /// Turns the view to everything that is drawn.
    void showEverything();
    /// Turns the view to everything that the overlays draw, as near as it can see it all.
    void showOverlays(const std::vector<void*>& handles);
    void showPlatformFromAbove(std::uint64_t id);

    /// Gives the view the mouse, or takes it back, after a plug-in has grabbed or ungrabbed it.
    void updateMouseGrab();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void connectView();
    void connectScenario();
    void connectWindow();
    bool passMouse(const ViewMouseEvent& event);
    bool tellPlugins(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event);
    void sendEvent(PIApplicationEvents_t code, const void* data = nullptr);
    QStringList dropLeftovers(Plugin& plugin);
    void refreshOverlayPanel();
    void listShapes(void* handle);
    /// Begins what the user asks for and may take long, in the place of what was asked for before.
    void undertake(Work work, std::function<void()> done);
    /// Selects the shape that is seen at a pixel of the view in the panel.
    void selectShapeAt(double x, double y);
    void selectShape(const std::optional<PickedShape>& picked);
    void lookAt(std::vector<OverlayScene::Entry> entries, std::vector<halCore::Ecef> places);
    void addAttachMenu(QMenu& menu, const std::vector<void*>& overlays);
    void addPlatformByUser();
    void savePictureByUser();
    void printByUser();

    Log log_;
    Settings settings_;
    HandleRegistry handles_;
    CallTrace trace_{handles_};
    ServiceTable services_;
    Scenario scenario_;
    MainWindow window_;
    OverlayFiles overlays_;
    PluginRegistrations registrations_;
    PluginActions actions_;
    FieldKeys fieldKeys_;
    WindowPlaces places_;
    std::unique_ptr<FileDialogs> fileDialogs_;
    std::unique_ptr<UserFiles> files_;
    std::unique_ptr<Session> session_;
    PlatformMarkers markers_;
    TrackLines tracks_;
    WorkInTurns deed_;  ///< the user's latest one that takes long
    std::optional<BusyCursor> busy_;
    ClockBar* clockBar_;
    std::vector<std::unique_ptr<Plugin>> plugins_;
    QTimer overlayPanelSoon_;
    std::optional<QPoint> cursor_;
};

}  // namespace sandbox
