#include "sandbox/ClockBar.h"

#include <QComboBox>
#include <QDateTime>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyle>
#include <QTimeZone>
#include <algorithm>
#include <cmath>

#include "sandbox/scenario/Scenario.h"

namespace sandbox {

namespace {

constexpr double kRates[] = {1.0, 5.0, 10.0, 30.0, 60.0, 300.0, 600.0, 3600.0};
constexpr int kSteps = 10000;

QString timeText(double seconds) {
    const QDateTime begin(QDate(Scenario::kReferenceYear, 1, 1), QTime(0, 0), QTimeZone::utc());
    return begin.addMSecs(static_cast<qint64>(std::llround(seconds * 1000.0)))
        .toString("yyyy-MM-dd HH:mm:ss 'UTC'");
}

}  // namespace

ClockBar::ClockBar(Scenario& scenario) : QToolBar("Clock"), scenario_(scenario) {
    setObjectName("Clock");
    setMovable(false);

    play_ = addAction("&Run Clock");
    play_->setCheckable(true);
    play_->setShortcut(QKeySequence("Ctrl+R"));
    connect(play_, &QAction::triggered, &scenario_, &Scenario::setRunning);

    rate_ = new QComboBox;
    rate_->setToolTip("How fast the clock runs");
    for (const double rate : kRates) rate_->addItem(QString("%1 x").arg(rate), rate);
    connect(rate_, &QComboBox::activated, this,
            [this](int index) { scenario_.setRate(rate_->itemData(index).toDouble()); });
    addWidget(rate_);

    slider_ = new QSlider(Qt::Horizontal);
    slider_->setRange(0, kSteps);
    slider_->setPageStep(kSteps / 20);
    slider_->setToolTip("The scenario's time");
    connect(slider_, &QSlider::valueChanged, this, [this](int step) {
        scenario_.setTime(
            std::lerp(scenario_.beginTime(), scenario_.endTime(), static_cast<double>(step) / kSteps));
    });
    addWidget(slider_);

    time_ = new QLabel;
    time_->setMargin(4);
    addWidget(time_);

    connect(&scenario_, &Scenario::timeChanged, this, &ClockBar::showTime);
    connect(&scenario_, &Scenario::clockChanged, this, &ClockBar::showClock);
    hide();
    showClock();
}

void ClockBar::showClock() {
    const bool running = scenario_.isRunning();
    play_->setChecked(running);
    play_->setIcon(style()->standardIcon(running ? QStyle::SP_MediaPause : QStyle::SP_MediaPlay));
    rate_->setCurrentIndex(rate_->findData(scenario_.rate()));
    const bool hasSpan = scenario_.endTime() > scenario_.beginTime();
    slider_->setEnabled(hasSpan);
    if (hasSpan && !hadSpan_) show();
    hadSpan_ = hasSpan;
    showTime();
}

void ClockBar::showTime() {
    time_->setText(timeText(scenario_.time()));
    const double span = scenario_.endTime() - scenario_.beginTime();
    const double part = span > 0.0 ? (scenario_.time() - scenario_.beginTime()) / span : 0.0;
    const QSignalBlocker blocker(slider_);
    slider_->setValue(static_cast<int>(std::lround(std::clamp(part, 0.0, 1.0) * kSteps)));
}

}  // namespace sandbox
