#include "sandbox/MainWindow.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QStatusBar>
#include <initializer_list>

#include "common/Notify.h"
#include "globe/GlobeView.h"
#include "sandbox/Log.h"
#include "sandbox/LogPanel.h"
#include "sandbox/OverlayPanel.h"
#include "sandbox/PositionText.h"
#include "sandbox/widgets/Caption.h"
#include "sandbox/widgets/Mnemonics.h"

namespace sandbox {

MainWindow::MainWindow(const Log& log, const Scenario& scenario) : view_(new GlobeView(this)) {
    setWindowTitle("HALVIS Sandbox");
    setCentralWidget(view_);
    setContextMenuPolicy(Qt::NoContextMenu);
    setAcceptDrops(true);
    buildMenus();
    buildPanels(log, scenario);

    positionLabel_ = new QLabel;
    rangeLabel_ = new QLabel;
    readingLabel_ = new QLabel;
    readingLabel_->setTextFormat(Qt::PlainText);
    readingCancel_ = new QPushButton("Cancel");
    readingCancel_->setFocusPolicy(Qt::NoFocus);
    connect(readingCancel_, &QPushButton::clicked, this, &MainWindow::readingCanceled);
    for (QWidget* each : std::initializer_list<QWidget*>{readingLabel_, readingCancel_}) {
        each->hide();
        statusBar()->addPermanentWidget(each);
    }
    statusBar()->addWidget(positionLabel_, 1);
    statusBar()->addPermanentWidget(rangeLabel_);
    connect(view_, &GlobeView::cursorMoved, this, &MainWindow::showCursor);
    connect(view_, &GlobeView::cursorLeft, positionLabel_, &QLabel::clear);
    connect(view_, &GlobeView::cameraChanged, this, &MainWindow::showRange);
    showRange();
    resize(1280, 800);
}

void MainWindow::buildMenus() {
    QMenu* file = menuBar()->addMenu("&File");
    file->addAction("&Open Overlay...", QKeySequence::Open, this, &MainWindow::openOverlayRequested);
    file->addAction("Open P&latforms...", this, &MainWindow::openPlatformsRequested);
    recentMenu_ = file->addMenu("Open &Recent");
    recentMenu_->setToolTipsVisible(true);
    setRecentFiles({});
    file->addAction("&Close All", this, &MainWindow::closeAllRequested);
    file->addSeparator();
    file->addAction("&Save Picture...", this, &MainWindow::savePictureRequested);
    file->addAction("&Print...", QKeySequence::Print, this, &MainWindow::printRequested);
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

void MainWindow::buildPanels(const Log& log, const Scenario& scenario) {
    overlayPanel_ = new OverlayPanel(scenario);
    auto* overlays = new QDockWidget("Overlays", this);
    overlays->setObjectName("Overlays");
    overlays->setWidget(overlayPanel_);
    addDockWidget(Qt::RightDockWidgetArea, overlays);

    auto* logPanel = new LogPanel(log);
    auto* messages = new QDockWidget("Log", this);
    messages->setObjectName("Log");
    messages->setWidget(logPanel);
    addDockWidget(Qt::BottomDockWidgetArea, messages);

    errorMark_ = new QPushButton;
    errorMark_->setFlat(true);
    errorMark_->setFocusPolicy(Qt::NoFocus);
    errorMark_->setStyleSheet("color: white; background: #c0392b; padding: 0 6px; border-radius: 3px");
    errorMark_->setToolTip("Shows the log");
    errorMark_->hide();
    statusBar()->addPermanentWidget(errorMark_);
    const auto seen = [this] {
        errors_ = 0;
        errorMark_->hide();
    };
    connect(logPanel, &LogPanel::looked, this, seen);
    connect(errorMark_, &QPushButton::clicked, this, [seen, messages] {
        messages->show();
        messages->raise();
        seen();
    });
    const auto count = [this](const LogEntry& entry) {
        if (entry.severity > halNotify::Error || entry.severity == halNotify::Always) return;
        ++errors_;
        errorMark_->setText(errors_ == 1 ? QString("1 error") : QString("%1 errors").arg(errors_));
        errorMark_->show();
    };
    // What was said before there was a window, too.
    for (const LogEntry& entry : log.entries()) count(entry);
    connect(&log, &Log::added, this, count);

    resizeDocks({overlays}, {240}, Qt::Horizontal);
    resizeDocks({messages}, {96}, Qt::Vertical);

    viewMenu_ = menuBar()->addMenu("&View");
    viewMenu_->addAction(overlays->toggleViewAction());
    viewMenu_->addAction(messages->toggleViewAction());
    for (QMenu* menu : menuBar()->findChildren<QMenu*>()) keepMnemonics(*menu);
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

void MainWindow::showReading(const QString& path, int percent) {
    readingLabel_->setText(QString("Reading %1: %2 %").arg(QFileInfo(path).fileName()).arg(percent));
    readingLabel_->setVisible(!path.isEmpty());
    readingCancel_->setVisible(!path.isEmpty());
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
