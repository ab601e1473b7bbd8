#include "sandbox/Host.h"

#include <QEvent>
#include <QFileInfo>
#include <QInputDialog>
#include <QMenu>
#include <QMenuBar>
#include <QPrintDialog>
#include <QPrinter>
#include <algorithm>
#include <cstdlib>
#include <utility>

#include <unistd.h>

#include "common/Notify.h"
#include "geo/Angles.h"
#include "globe/GlobeView.h"
#include "globe/SceneExtent.h"
#include "globe/ShapePick.h"
#include "sandbox/ClockBar.h"
#include "sandbox/FirstSteps.h"
#include "sandbox/KeysDialog.h"
#include "sandbox/OverlayPanel.h"
#include "sandbox/OverlayTextWindow.h"
#include "sandbox/PictureDialog.h"
#include "sandbox/PlatformDialog.h"
#include "sandbox/PlatformView.h"
#include "sandbox/Session.h"
#include "sandbox/ShapeIcon.h"
#include "sandbox/UserFiles.h"
#include "sandbox/ViewMenu.h"
#include "sandbox/ViewPicture.h"
#include "sandbox/services/ContextMenu.h"
#include "sandbox/services/FileDialogs.h"
#include "sandbox/services/Services.h"
#include "sandbox/widgets/Caption.h"
#include "sandbox/widgets/Mnemonics.h"

namespace sandbox {

using halCore::kHalfPi;

namespace {

using PIGUI::PIMouseEventType_t;

Host* living = nullptr;

/// Without its screen Qt leaves the program in its midst, and nothing may be drawn any more.
void closeInExit() {
    if (Host* const host = std::exchange(living, nullptr)) host->closeWithoutScreen();
}

PIMouseEventType_t typeOf(ViewMouseEvent::Kind kind) {
    switch (kind) {
        case ViewMouseEvent::Kind::LeftPress:
            return PIMouseEventType_t::LeftPress;
        case ViewMouseEvent::Kind::LeftRelease:
            return PIMouseEventType_t::LeftRelease;
        case ViewMouseEvent::Kind::MiddlePress:
            return PIMouseEventType_t::MiddlePress;
        case ViewMouseEvent::Kind::MiddleRelease:
            return PIMouseEventType_t::MiddleRelease;
        case ViewMouseEvent::Kind::RightPress:
            return PIMouseEventType_t::RightPress;
        case ViewMouseEvent::Kind::RightRelease:
            return PIMouseEventType_t::RightRelease;
        case ViewMouseEvent::Kind::DoubleClick:
            return PIMouseEventType_t::LeftDoubleClick;
        case ViewMouseEvent::Kind::Wheel:
            return PIMouseEventType_t::Wheel;
        case ViewMouseEvent::Kind::Motion:
            break;
    }
    return PIMouseEventType_t::Motion;
}

const char* const kTitleKey = "Host/PrintTitle";
const char* const kGreetedKey = "Host/FirstStepsRead";

std::uint32_t modifiersOf(unsigned modifiers) {
    return (modifiers & ViewMouseEvent::Shift ? PIGUI::PIModifierShift : 0U) |
           (modifiers & ViewMouseEvent::Control ? PIGUI::PIModifierControl : 0U) |
           (modifiers & ViewMouseEvent::Alt ? PIGUI::PIModifierAlt : 0U);
}

}  // namespace

Host::Host(const QString& settingsFile)
    : settings_(settingsFile, log_),
      services_(log_, handles_, trace_),
      window_(log_, scenario_),
      overlays_(window_.view().overlays(), scenario_, handles_, log_),
      actions_(window_.actionsMenu(), *window_.menuBar(), settings_),
      places_(window_, handles_, settings_),
      fileDialogs_(std::make_unique<FileDialogs>(window_, settings_)),
      files_(std::make_unique<UserFiles>(overlays_, scenario_, window_, *fileDialogs_, settings_, log_)),
      session_(std::make_unique<Session>(*files_, overlays_, scenario_, window_.view(), settings_)),
      markers_(window_.view(), scenario_),
      tracks_(window_.view().overlays(), scenario_),
      clockBar_(new ClockBar(scenario_)) {
    living = this;
    halNotify::setNotifyHandler([this](halNotify::Severity severity, const std::string& message) {
        log_.add(severity, "host", QString::fromStdString(message));
    });
    addWidgetServices(*this);
    addValueServices(*this);
    addListServices(*this);
    addDialogServices(*this);
    addSettingsServices(*this);
    addScenarioServices(*this);
    addApplicationServices(*this);
    addViewServices(*this);
    addOverlayServices(*this);
    addScreenServices(*this);
    addContextMenuServices(*this);
    connect(&log_, &Log::added, this, [this](const LogEntry& entry) {
        trace_.note(
            QString("log %1 %2: %3").arg(Log::severityName(entry.severity), entry.source, entry.text));
    });
    connectView();
    connectScenario();
    connectWindow();
}

Host::~Host() {
    closePlugins();
    living = nullptr;
    // The window outlives this destructor's body: nothing of its end may come back here.
    view().removeEventFilter(this);
    window_.disconnect(this);
    view().setMouseListener(nullptr);
    view().setRefreshHook(nullptr);
    halNotify::setNotifyHandler(nullptr);
    for (LoadedOverlay* overlay : overlays_.files()) handles_.remove(overlay->handle());
}

void Host::connectView() {
    view().setMouseListener([this](const ViewMouseEvent& event) { return passMouse(event); });
    view().setRefreshHook([this](int width, int height) {
        for (const auto& plugin : plugins_) plugin->preDraw(width, height);
    });
    view().installEventFilter(this);
}

bool Host::passMouse(const ViewMouseEvent& event) {
    using enum ViewMouseEvent::Kind;
    const QPoint place(event.x, event.y);
    const bool moved = cursor_ != place;
    cursor_ = place;
    const auto kind = event.kind;
    const bool isPress =
        kind == LeftPress || kind == MiddlePress || kind == RightPress || kind == DoubleClick;
    // A script, a touch screen, and a window that was over the view a moment ago have made none.
    if (moved && isPress)
        tellPlugins(PIMouseEventType_t::Motion, {event.x, event.y, modifiersOf(event.modifiers), 0});
    return tellPlugins(typeOf(kind), {event.x, event.y, modifiersOf(event.modifiers), event.wheelDelta});
}

bool Host::tellPlugins(PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) {
    for (const auto& plugin : plugins_)
        if (plugin->mouse(type, event)) return true;
    return false;
}

bool Host::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &view() && event->type() == QEvent::Leave) {
        const QPoint last = cursor_.value_or(QPoint(-1, -1));
        tellPlugins(PIMouseEventType_t::Leave, {last.x(), last.y(), 0, 0});
        cursor_.reset();
    }
    return false;
}

void Host::updateMouseGrab() {
    // Not Qt's grab: with that nobody could reach the plug-in's own dialogs any more. While a button is held
    // the view has the mouse anyway.
    if (registrations_.mouseGrabs.empty())
        view().unsetCursor();
    else
        view().setCursor(Qt::CrossCursor);
}

void Host::connectScenario() {
    connect(&scenario_, &Scenario::platformAdded, this,
            [this](std::uint64_t id) { sendEvent(PIApplicationEvents_t::PlatformAdded, &id); });
    connect(&scenario_, &Scenario::platformRemoved, this,
            [this](std::uint64_t id) { sendEvent(PIApplicationEvents_t::EntityRemoved, &id); });
    connect(&scenario_, &Scenario::cleared, this, [this](PIApplicationEvents_t why) { sendEvent(why); });
    connect(&scenario_, &Scenario::timeChanged, this,
            [this] { sendEvent(PIApplicationEvents_t::TimeChanged); });
}

void Host::sendEvent(PIApplicationEvents_t code, const void* data) {
    for (const auto& plugin : plugins_)
        if (plugin->state() == Plugin::State::Started) plugin->event(code, data);
}

void Host::connectWindow() {
    overlayPanelSoon_.setSingleShot(true);
    overlayPanelSoon_.setInterval(0);
    connect(&overlayPanelSoon_, &QTimer::timeout, this, &Host::refreshOverlayPanel);
    const auto refreshSoon = [this] {
        if (!overlayPanelSoon_.isActive()) overlayPanelSoon_.start();
    };
    connect(&overlays_, &OverlayFiles::filesChanged, this, refreshSoon);
    connect(&scenario_, &Scenario::platformAdded, this, refreshSoon);
    connect(&scenario_, &Scenario::platformRemoved, this, refreshSoon);

    connect(&window_, &MainWindow::savePictureRequested, this, &Host::savePictureByUser);
    connect(&window_, &MainWindow::printRequested, this, &Host::printByUser);
    connect(&window_, &MainWindow::addPlatformRequested, this, &Host::addPlatformByUser);
    connect(&window_, &MainWindow::clearScenarioRequested, this,
            [this] { scenario_.clear(PIApplicationEvents_t::ScenarioCleared); });
    connect(&window_, &MainWindow::tracksToggled, &tracks_, &TrackLines::setShown);
    window_.addToolBar(Qt::BottomToolBarArea, clockBar_);
    window_.scenarioMenu().addAction(&clockBar_->playAction());
    window_.viewMenu().addAction(clockBar_->toggleViewAction());
    window_.viewMenu().addSeparator();
    window_.viewMenu().addAction("Show &Everything", QKeySequence("Ctrl+E"), this, &Host::showEverything);
    fillViewMenu(window_.viewMenu(), view(), settings_);
    window_.actionsMenu().addAction("&Keys...", this,
                                    [this] { (new KeysDialog(actions_, &window_))->open(); });
    OverlayPanel& panel = window_.overlayPanel();
    // A platform's row says whether it is anywhere.
    connect(&markers_, &PlatformMarkers::presenceChanged, &panel, [&panel] { panel.viewport()->update(); });
    connect(&panel, &OverlayPanel::overlayShownChanged, this, [this](void* handle, bool shown) {
        if (auto* overlay = handles_.find<LoadedOverlay>(handle)) overlays_.show(*overlay, shown);
    });
    connect(&panel, &OverlayPanel::overlayMenuRequested, this, &Host::openOverlayMenu);
    connect(&panel, &OverlayPanel::shapesWanted, this, &Host::listShapes);
    connect(&view(), &GlobeView::clicked, this, &Host::selectShapeAt);
    connect(&panel, &OverlayPanel::platformMenuRequested, this, &Host::openPlatformMenu);
    connect(&panel, &OverlayPanel::overlayActivated, this, [this](void* handle) { showOverlays({handle}); });
    connect(&panel, &OverlayPanel::platformActivated, this, &Host::showPlatformFromAbove);
    connect(&window_, &MainWindow::closeAllRequested, this, [this] { files_->closeAll(); });
    connect(session_.get(), &Session::kept, &places_, &WindowPlaces::keep);
    connect(session_.get(), &Session::restored, &places_, &WindowPlaces::reopenDialogs);
    connect(&places_, &WindowPlaces::changed, session_.get(), &Session::keepSoon);
    connect(&window_, &MainWindow::closing, this, [this] {
        session_->finish();
        closePlugins();
    });
}

void Host::refreshOverlayPanel() {
    std::vector<OverlayRows::Overlay> overlays;
    for (const LoadedOverlay* overlay : overlays_.files()) {
        const QString path = QString::fromStdString(overlay->path);
        overlays.push_back({overlay->handle(), QFileInfo(path).fileName(), path, overlay->platform,
                            overlay->shown, static_cast<int>(overlay->messages.size())});
    }
    window_.overlayPanel().refresh(std::move(overlays));
}

void Host::listShapes(void* handle) {
    constexpr std::size_t kMost = 500;
    const auto* overlay = handles_.find<LoadedOverlay>(handle);
    const OverlayScene::Entry* entry = overlay ? view().overlays().find(overlay->sceneId) : nullptr;
    if (!entry) return;
    std::vector<OverlayRows::Shape> rows;
    for (const auto& shape : entry->shapes) {
        if (rows.size() == kMost) break;
        rows.push_back({shapeTitle(*shape), shapeIcon(*shape)});
    }
    const std::size_t more = entry->shapes.size() - rows.size();
    window_.overlayPanel().setShapes(handle, std::move(rows), more);
}

void Host::undertake(Work work, std::function<void()> done) {
    busy_.reset();
    deed_.begin(std::move(work), [this, done = std::move(done)] {
        busy_.reset();
        done();
    });
    if (deed_.goesOn()) busy_.emplace(Qt::BusyCursor);
}

void Host::selectShapeAt(double x, double y) {
    const auto picked = std::make_shared<std::optional<PickedShape>>();
    undertake(pickShape(view().overlays(), view().camera(), x, y, *picked),
              [this, picked] { selectShape(*picked); });
}

void Host::selectShape(const std::optional<PickedShape>& picked) {
    for (const LoadedOverlay* overlay : overlays_.files())
        if (picked && overlay->sceneId == picked->overlay) {
            window_.overlayPanel().selectShape(overlay->handle(), picked->shape);
            return;
        }
    window_.overlayPanel().selectShape(nullptr, 0);
}

void Host::showOverlays(const std::vector<void*>& handles) {
    std::vector<OverlayScene::Entry> entries;
    for (void* handle : handles)
        if (const auto* overlay = handles_.find<LoadedOverlay>(handle))
            entries.push_back(*view().overlays().find(overlay->sceneId));
    lookAt(std::move(entries), {});
}

void Host::showEverything() {
    std::vector<OverlayScene::Entry> entries;
    for (const auto& [id, entry] : view().overlays().entries()) entries.push_back(entry);
    lookAt(std::move(entries), placesOf(scenario_));
}

void Host::lookAt(std::vector<OverlayScene::Entry> entries, std::vector<halCore::Ecef> places) {
    const auto extent = std::make_shared<std::optional<SceneExtent>>();
    // Ends a flight.
    view().setCenter(view().camera().center());
    const Camera before = view().camera();
    undertake(measureExtent(std::move(entries), std::move(places), *extent), [this, extent, before] {
        Camera now = view().camera();
        now.setViewport(before.width(), before.height());
        // Whoever has turned the view meanwhile wants to look there.
        if (!(now == before)) return;
        if (!*extent) {
            log_.add(halNotify::Notice, "host", "there is nothing to look at");
            return;
        }
        const Outlook outlook = outlookOn(**extent, view().camera());
        view().setCenter(outlook.center);
        view().setRangeAzimuthElevation(outlook.range, 0.0, kHalfPi);
    });
}

void Host::greet() {
    places_.restoreWindow();
    if (!settings_.value(kGreetedKey).isEmpty()) return;
    connect(new FirstSteps(view()), &FirstSteps::understood, this,
            [this] { settings_.setValue(kGreetedKey, "yes"); });
}

void Host::showPlatformFromAbove(std::uint64_t id) {
    const auto point = scenario_.at(id, scenario_.time());
    if (!point) return;
    constexpr double kPlatformRange = 100e3;
    view().setCenter({point->latRad, point->lonRad, 0.0});
    view().setRangeAzimuthElevation(std::min(view().camera().range(), kPlatformRange), 0.0, kHalfPi);
}

Plugin* Host::openPlugin(const std::filesystem::path& path) {
    auto opened = PluginLibrary::open(path, ServiceTable::kHostBuildNumber);
    if (const QString* refusal = std::get_if<QString>(&opened)) {
        log_.add(halNotify::Error, "host", *refusal);
        return nullptr;
    }
    auto& library = std::get<PluginLibrary>(opened);
    for (const auto& plugin : plugins_) {
        if (!plugin->isOf(library)) continue;
        log_.add(halNotify::Error, "host",
                 QString("%1 is refused: it is %2, which runs already, and one library is one plug-in")
                     .arg(QString::fromStdString(path.filename().string()), plugin->name()));
        return nullptr;
    }
    plugins_.push_back(std::make_unique<Plugin>(std::move(library), log_, trace_));
    Plugin& plugin = *plugins_.back();
    services_.admit(plugin);
    plugin.initialize(services_);
    // Behind what the library has registered, which runs the other way round.
    std::atexit(&closeInExit);
    if (const int status = plugin.startUp(); status != 0) {
        log_.add(halNotify::Error, "host",
                 QString("%1: start-up failed with %2, so it is closed").arg(plugin.name()).arg(status));
        closePlugin(plugin);
        return nullptr;
    }
    log_.add(
        halNotify::Notice, "host",
        QString("%1 %2 started").arg(plugin.name(), plugin.text(PIClientFunctions_t::Version)).simplified());
    return &plugin;
}

bool Host::closePlugin(Plugin& plugin) {
    // OpenGL objects of the plug-in's may die only while the context is current.
    if (view().isValid()) view().makeCurrent();
    plugin.close();
    if (view().isValid()) view().doneCurrent();

    const QStringList leftovers = dropLeftovers(plugin);
    if (!leftovers.isEmpty()) {
        log_.add(halNotify::Warning, "host",
                 QString("%1 left behind: %2").arg(plugin.name(), leftovers.join(", ")));
    }
    plugin.cleanUp();
    services_.expel(plugin);
    const bool gone = plugin.unload();
    if (!gone)
        log_.add(halNotify::Error, "host", plugin.name() + " is still in the process after its unloading");
    std::erase_if(plugins_, [&plugin](const auto& entry) { return entry.get() == &plugin; });
    return gone;
}

void Host::closePlugins() {
    while (!plugins_.empty()) closePlugin(*plugins_.back());
}

void Host::closeWithoutScreen() {
    for (const auto& plugin : plugins_) plugin->close();
    settings_.flush();
    // What else would end itself wants the screen.
    ::_exit(EXIT_FAILURE);
}

QStringList Host::dropLeftovers(Plugin& plugin) {
    QStringList names;
    for (const HostObject* object : handles_.ownedBy(&plugin))
        if (object->isPluginsOwn() && !object->isPartOfAnother()) names << object->describe();
    for (const HostObject* object : handles_.ownedBy(&plugin)) handles_.remove(object->handle());

    std::vector<std::uint64_t> platforms;
    for (const auto& [id, platform] : scenario_.platforms())
        if (platform.owner == &plugin) platforms.push_back(id);
    for (const std::uint64_t id : platforms) {
        names << QString("platform \"%1\"").arg(QString::fromStdString(scenario_.find(id)->name));
        scenario_.remove(id);
    }

    if (const int count = overlays_.removeObservers(&plugin); count > 0)
        names << QString("%1 overlay observer(s)").arg(count);
    const auto callbacks = std::erase_if(registrations_.menuCallbacks,
                                         [&plugin](const auto& entry) { return entry.owner == &plugin; });
    if (callbacks > 0) names << QString("%1 context menu callback(s)").arg(callbacks);
    for (auto at = registrations_.services.begin(); at != registrations_.services.end();) {
        if (at->second.owner != &plugin) {
            ++at;
            continue;
        }
        names << QString("service \"%1\"").arg(QString::fromStdString(at->first));
        at = registrations_.services.erase(at);
    }
    if (registrations_.mouseGrabs.erase(&plugin) > 0) {
        names << "the grabbed mouse";
        updateMouseGrab();
    }
    return names;
}

void Host::openOverlayMenu(const std::vector<void*>& overlays, const QPoint& globalPosition) {
    auto* gathered = handles_.add(std::make_unique<ContextMenu>(), nullptr);
    void* menuHandle = gathered->handle();
    const auto forEach = [this, overlays](auto operation) {
        return [this, overlays, operation] {
            for (void* handle : overlays)
                if (auto* overlay = handles_.find<LoadedOverlay>(handle)) operation(*overlay);
        };
    };
    const bool any = !overlays.empty();
    gathered->add(90, "Zoom To", any, [this, overlays] { showOverlays(overlays); });
    gathered->add(100, "Show", any,
                  forEach([this](LoadedOverlay& overlay) { overlays_.show(overlay, true); }));
    gathered->add(110, "Hide", any,
                  forEach([this](LoadedOverlay& overlay) { overlays_.show(overlay, false); }));
    gathered->add(120, "Show Text", any, forEach([this](LoadedOverlay& overlay) {
                      (new OverlayTextWindow(overlay, &window_))->show();
                  }));
    gathered->add(900, "Unload", any, forEach([this](LoadedOverlay& overlay) { overlays_.unload(overlay); }));

    PIHALVIS::ZelMenuData data;
    data.overlays = overlays;
    for (const auto& entry : std::vector(registrations_.menuCallbacks))
        entry.owner->enter("context menu requested", [&] {
            entry.callback->menuRequested(PIHALVIS::CLICKED_GUI_ZEL_LIST_NAME, &data, menuHandle);
        });

    auto* menu = new QMenu(&window_);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    keepMnemonics(*menu);
    gathered->fill(*menu);
    handles_.remove(menuHandle);
    if (any) addAttachMenu(*menu, overlays);
    menu->popup(globalPosition);
}

void Host::addAttachMenu(QMenu& menu, const std::vector<void*>& overlays) {
    auto* attach = new QMenu("Attach To", &menu);
    keepMnemonics(*attach);
    const auto attachTo = [this, overlays](std::uint64_t platform) {
        for (void* handle : overlays)
            if (auto* overlay = handles_.find<LoadedOverlay>(handle)) overlays_.attach(*overlay, platform);
    };
    const auto offer = [&](const QString& name, std::uint64_t platform) {
        constexpr int kWidest = 400;
        const QString shown =
            attach->fontMetrics().elidedText(Caption::inOneLine(name), Qt::ElideMiddle, kWidest);
        attach->addAction(Caption::escaped(shown), this, [attachTo, platform] { attachTo(platform); });
    };
    offer("Nothing", 0);
    attach->addSeparator();
    // Of more than a screen holds one is asked for.
    constexpr std::size_t kMostOffered = 50;
    if (scenario_.platforms().size() > kMostOffered)
        attach->addAction("Platform...", this, [this, attachTo] {
            PlatformDialog dialog(scenario_, "Attach To", &window_);
            // It may be gone by then.
            if (dialog.exec() == QDialog::Accepted && scenario_.find(dialog.platform()))
                attachTo(dialog.platform());
        });
    else
        for (const auto& [id, platform] : scenario_.platforms())
            offer(QString::fromStdString(platform.name), id);
    const QList<QAction*> items = menu.actions();
    menu.insertMenu(items.isEmpty() ? nullptr : items.last(), attach);
}

void Host::openPlatformMenu(std::uint64_t id, const QPoint& globalPosition) {
    auto* menu = new QMenu(&window_);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    keepMnemonics(*menu);
    menu->addAction("Zoom To", this, [this, id] { showPlatformFromAbove(id); });
    menu->addAction("Remove", this, [this, id] { scenario_.remove(id); });
    menu->popup(globalPosition);
}

void Host::savePictureByUser() {
    PictureDialog dialog(settings_, &window_);
    if (dialog.exec() != QDialog::Accepted) return;
    const QString path =
        fileDialogs_->ask({.kind = FileDialogs::Kind::Save,
                           .title = "Save Picture",
                           .group = "Host",
                           .key = "LastPicture",
                           .startDirectory = {},
                           .filterRows = {"PNG pictures\t*.png", "SVG pictures, for print\t*.svg"}});
    if (path.isEmpty()) return;
    const BusyCursor busy(Qt::WaitCursor);
    if (const QString problem = saveView(view(), dialog.look(), path); !problem.isEmpty())
        log_.add(halNotify::Error, "host", QString("picture %1 cannot be written: %2").arg(path, problem));
}

void Host::printByUser() {
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(QPageLayout::Landscape);
    printer.setDocName("HALVIS Sandbox");
    QPrintDialog dialog(&printer, &window_);
    if (dialog.exec() != QDialog::Accepted) return;
    bool accepted = false;
    const QString title = QInputDialog::getText(&window_, "Print", "Title:", QLineEdit::Normal,
                                                settings_.value(kTitleKey), &accepted);
    if (!accepted) return;
    settings_.setValue(kTitleKey, title);
    const BusyCursor busy(Qt::WaitCursor);
    if (const QString problem = printView(view(), title, printer); !problem.isEmpty())
        log_.add(halNotify::Error, "host", QString("the view cannot be printed: %1").arg(problem));
}

void Host::addPlatformByUser() {
    const QString name = QInputDialog::getText(&window_, "Add Platform", "Name:");
    if (name.trimmed().isEmpty()) return;
    PIData::PIDataPoint point;
    point.timeSeconds = scenario_.time();
    point.latRad = view().camera().center().lat();
    point.lonRad = view().camera().center().lon();
    PIData::PIPlatformHeader header;
    header.name = name.trimmed().toStdString();
    scenario_.add(header, point);
}

}  // namespace sandbox
