#pragma once

#include <QToolBar>

class QComboBox;
class QLabel;
class QSlider;

namespace sandbox {

class Scenario;

/// The scenario's clock: runs and stops it, sets how fast it goes, and moves it to any time that the
/// loaded tracks span. It comes up by itself with the first track.
class ClockBar : public QToolBar {
    Q_OBJECT

  public:
    explicit ClockBar(Scenario& scenario);

    /// Runs and stops the clock; also for a menu.
    QAction& playAction() { return *play_; }

  private:
    void showClock();
    void showTime();

    Scenario& scenario_;
    QAction* play_;
    QSlider* slider_;
    QLabel* time_;
    QComboBox* rate_;
    bool hadSpan_ = false;
};

}  // namespace sandbox
