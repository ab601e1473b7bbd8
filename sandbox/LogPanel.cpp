#include "sandbox/LogPanel.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QScrollBar>

#include "common/Notify.h"
#include "sandbox/Log.h"

namespace sandbox {

namespace {

constexpr int kLinesShown = 2000;

}  // namespace

LogPanel::LogPanel(const Log& log) : log_(log), filter_(new QComboBox), text_(new QPlainTextEdit) {
    filter_->addItem("All", halNotify::Debug);
    filter_->addItem("Warnings", halNotify::Warning);
    filter_->addItem("Errors", halNotify::Error);
    filter_->setToolTip("What the log shows, the more serious included");
    connect(filter_, &QComboBox::activated, this, &LogPanel::fill);

    text_->setReadOnly(true);
    text_->setMaximumBlockCount(kLinesShown);
    text_->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    text_->installEventFilter(this);
    text_->viewport()->installEventFilter(this);
    QScrollBar* bar = text_->verticalScrollBar();
    // Only the user's hand turns back: new lines and other widths move the bar, too.
    connect(bar, &QScrollBar::actionTriggered, this,
            [this, bar] { following_ = bar->sliderPosition() >= bar->maximum(); });
    connect(bar, &QScrollBar::rangeChanged, this, [this, bar] {
        if (following_) bar->setValue(bar->maximum());
    });

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(text_, 1);
    layout->addWidget(filter_, 0, Qt::AlignTop);
    for (const LogEntry& entry : log_.entries()) append(entry);
    connect(&log_, &Log::added, this, &LogPanel::append);
}

bool LogPanel::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::FocusIn) emit looked();
    if (event->type() == QEvent::Wheel) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                const QScrollBar* bar = text_->verticalScrollBar();
                following_ = bar->value() >= bar->maximum();
            },
            Qt::QueuedConnection);
    }
    return false;
}

void LogPanel::append(const LogEntry& entry) {
    if (entry.severity > filter_->currentData().toInt()) return;
    const QString line = entry.shown();
    const bool dark = text_->palette().color(QPalette::Base).lightness() < 128;
    const char* color = nullptr;
    if (entry.severity <= halNotify::Error)
        color = dark ? "#ff7b6b" : "#c0392b";
    else if (entry.severity == halNotify::Warning)
        color = dark ? "#f0b454" : "#9a6009";
    if (color)
        text_->appendHtml(QString("<span style=\"color:%1\">%2</span>")
                              .arg(color, line.toHtmlEscaped().replace('\n', "<br>")));
    else
        text_->appendPlainText(line);
    if (following_) text_->verticalScrollBar()->setValue(text_->verticalScrollBar()->maximum());
}

void LogPanel::fill() {
    text_->clear();
    following_ = true;
    for (const LogEntry& entry : log_.entries()) append(entry);
}

}  // namespace sandbox
