#include "sandbox/MainWindow.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QStatusBar>

#include "common/Notify.h"
#include "globe/GlobeView.h"
#include "sandbox/Log.h"
#include "sandbox/OverlayPanel.h"
#include "sandbox/PositionText.h"
#include "sandbox/widgets/Caption.h"

namespace sandbox {

namespace {

constexpr int kLogLinesShown = 2000;

}  // namespace

MainWindow::MainWindow(const Log& log) : view_(new GlobeView(this)) {
    setWindowTitle("HALVIS Sandbox");
    setCentralWidget(view_);
    setContextMenuPolicy(Qt::NoContextMenu);
    setAcceptDrops(true);
    buildMenus();
    buildPanels(log);

    positionLabel_ = new QLabel;
    rangeLabel_ = new QLabel;
    statusBar()->addWidget(positionLabel_, 1);
    statusBar()->addPermanentWidget(rangeLabel_);
    connect(view_, &GlobeView::cursorMoved, this, &MainWindow::showCursor);
    connect(view_, &GlobeView::cameraChanged, this, &MainWindow::showRange);
    showCursor(false, 0.0, 0.0);
    showRange();
    resize(1280, 800);
}

void MainWindow::buildMenus() {
    QMenu* file = menuBar()->addMenu("&File");
    file->addAction("&Open Overlay...", QKeySequence::Open, this, &MainWindow::openOverlayRequested);
    file->addAction("Open &Platforms...", this, &MainWindow::openPlatformsRequested);
    recentMenu_ = file->addMenu("Open &Recent");
    recentMenu_->setToolTipsVisible(true);
    setRecentFiles({});
    file->addSeparator();
    file->addAction("&Save Picture...", this, &MainWindow::savePictureRequested);
    file->addSeparator();
    file->addAction("&Quit", QKeySequence::Quit, this, &QWidget::close);

    scenarioMenu_ = menuBar()->addMenu("&Scenario");
    scenarioMenu_->addAction("&Add Platform...", this, &MainWindow::addPlatformRequested);
    QAction* tracks = scenarioMenu_->addAction("Show &Tracks", this, &MainWindow::tracksToggled);
    tracks->setCheckable(true);
    tracks->setChecked(true);
    scenarioMenu_->addSeparator();
    scenarioMenu_->addAction("&Clear Scenario", this, &MainWindow::clearScenarioRequested);

    pluginMenu_ = menuBar()->addMenu("&Plug-ins");
    pluginMenu_->setToolTipsVisible(true);
    actionsMenu_ = menuBar()->addMenu("&Actions");
}

void MainWindow::buildPanels(const Log& log) {
    overlayPanel_ = new OverlayPanel;
    auto* overlays = new QDockWidget("Overlays", this);
    overlays->setObjectName("Overlays");
    overlays->setWidget(overlayPanel_);
    addDockWidget(Qt::RightDockWidgetArea, overlays);

    logText_ = new QPlainTextEdit;
    logText_->setReadOnly(true);
    logText_->setMaximumBlockCount(kLogLinesShown);
    logText_->setLineWrapMode(QPlainTextEdit::NoWrap);
    auto* messages = new QDockWidget("Log", this);
    messages->setObjectName("Log");
    messages->setWidget(logText_);
    addDockWidget(Qt::BottomDockWidgetArea, messages);
    for (const LogEntry& entry : log.entries()) appendLogEntry(entry);
    connect(&log, &Log::added, this, &MainWindow::appendLogEntry);

    resizeDocks({overlays}, {240}, Qt::Horizontal);
    resizeDocks({messages}, {96}, Qt::Vertical);

    viewMenu_ = menuBar()->addMenu("&View");
    viewMenu_->addAction(overlays->toggleViewAction());
    viewMenu_->addAction(messages->toggleViewAction());
}

void MainWindow::appendLogEntry(const LogEntry& entry) {
    const QString line = entry.shown();
    const bool dark = logText_->palette().color(QPalette::Base).lightness() < 128;
    const char* color = nullptr;
    if (entry.severity <= halNotify::Error)
        color = dark ? "#ff7b6b" : "#c0392b";
    else if (entry.severity == halNotify::Warning)
        color = dark ? "#f0b454" : "#9a6009";
    if (color)
        logText_->appendHtml(QString("<span style=\"color:%1\">%2</span>")
                                 .arg(color, line.toHtmlEscaped().replace('\n', "<br>")));
    else
        logText_->appendPlainText(line);
}

void MainWindow::setRecentFiles(const QStringList& paths) {
    recentMenu_->clear();
    recentMenu_->setEnabled(!paths.isEmpty());
    for (const QString& path : paths) {
        QAction* action = recentMenu_->addAction(Caption::escaped(QFileInfo(path).fileName()), this,
                                                 [this, path] { emit filesGiven({path}); });
        action->setToolTip(path);
    }
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    QStringList paths;
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile()) paths << url.toLocalFile();
    event->acceptProposedAction();
    emit filesGiven(paths);
}

void MainWindow::showCursor(bool onEarth, double latitude, double longitude) {
    positionLabel_->setText(onEarth ? positionText(latitude, longitude) : QString("off the earth"));
}

void MainWindow::showRange() {
    rangeLabel_->setText("Range " + lengthText(view_->camera().range()));
}

QString MainWindow::statusText() const {
    return positionLabel_->text() + "   " + rangeLabel_->text();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    emit closing();
    QMainWindow::closeEvent(event);
}

}  // namespace sandbox
