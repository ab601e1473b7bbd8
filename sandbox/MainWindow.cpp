#include "sandbox/MainWindow.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QTreeWidget>

#include "common/Notify.h"
#include "sandbox/Log.h"
#include "sandbox/PositionText.h"
#include "sandbox/view/GlobeView.h"

namespace sandbox {

namespace {

constexpr int kHandleRole = Qt::UserRole;
constexpr int kLogLinesShown = 2000;

void* handleOf(const QTreeWidgetItem& item) {
    return reinterpret_cast<void*>(item.data(0, kHandleRole).value<quintptr>());
}

}  // namespace

MainWindow::MainWindow(const Log& log) : view_(new GlobeView(this)) {
    setWindowTitle("HALVIS Sandbox");
    setCentralWidget(view_);
    setContextMenuPolicy(Qt::NoContextMenu);
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
    file->addAction("Save &Picture...", this, &MainWindow::savePictureRequested);
    file->addSeparator();
    file->addAction("&Quit", QKeySequence::Quit, this, &QWidget::close);

    QMenu* scenario = menuBar()->addMenu("&Scenario");
    scenario->addAction("&Add Platform...", this, &MainWindow::addPlatformRequested);
    scenario->addAction("&Run Clock", this, &MainWindow::clockToggled)->setCheckable(true);
    scenario->addSeparator();
    scenario->addAction("&Clear Scenario", this, &MainWindow::clearScenarioRequested);

    pluginMenu_ = menuBar()->addMenu("&Plug-ins");
    pluginMenu_->setToolTipsVisible(true);
    actionsMenu_ = menuBar()->addMenu("&Actions");
}

void MainWindow::buildPanels(const Log& log) {
    overlayList_ = new QTreeWidget;
    overlayList_->setHeaderLabels({"Overlay", "Platform"});
    overlayList_->setRootIsDecorated(false);
    overlayList_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    overlayList_->setContextMenuPolicy(Qt::CustomContextMenu);
    overlayList_->header()->setStretchLastSection(true);
    connect(overlayList_, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item) {
        emit overlayShownChanged(handleOf(*item), item->checkState(0) == Qt::Checked);
    });
    connect(overlayList_, &QWidget::customContextMenuRequested, this, [this](const QPoint& position) {
        std::vector<void*> handles;
        for (const QTreeWidgetItem* item : overlayList_->selectedItems()) handles.push_back(handleOf(*item));
        emit overlayMenuRequested(handles, overlayList_->viewport()->mapToGlobal(position));
    });
    auto* overlays = new QDockWidget("Overlays", this);
    overlays->setObjectName("Overlays");
    overlays->setWidget(overlayList_);
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

    QMenu* panels = menuBar()->addMenu("&View");
    panels->addAction(overlays->toggleViewAction());
    panels->addAction(messages->toggleViewAction());
}

void MainWindow::appendLogEntry(const LogEntry& entry) {
    const QString line =
        QString("%1  %2: %3").arg(Log::severityName(entry.severity), entry.source, entry.text);
    const char* color = entry.severity <= halNotify::Error     ? "#c0392b"
                        : entry.severity == halNotify::Warning ? "#b9770e"
                                                               : nullptr;
    if (color)
        logText_->appendHtml(QString("<span style=\"color:%1\">%2</span>").arg(color, line.toHtmlEscaped()));
    else
        logText_->appendPlainText(line);
}

void MainWindow::setOverlays(const std::vector<OverlayRow>& rows) {
    const QSignalBlocker blocker(overlayList_);
    std::vector<void*> selected;
    for (const QTreeWidgetItem* item : overlayList_->selectedItems()) selected.push_back(handleOf(*item));
    overlayList_->clear();
    for (const OverlayRow& row : rows) {
        auto* item = new QTreeWidgetItem(overlayList_, {row.name, row.detail});
        item->setData(0, kHandleRole, QVariant::fromValue(reinterpret_cast<quintptr>(row.handle)));
        item->setCheckState(0, row.shown ? Qt::Checked : Qt::Unchecked);
        item->setToolTip(0, row.name);
        item->setSelected(std::find(selected.begin(), selected.end(), row.handle) != selected.end());
    }
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
