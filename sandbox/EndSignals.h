#pragma once

#include <QObject>
#include <functional>

class QSocketNotifier;

namespace sandbox {

/// SIGTERM, SIGHUP and SIGINT, told from the event loop, so that the program ends as a person ends it. The
/// second one of a kind ends it at once. The end of the desktop's session (a logout) is told as 0. One object
/// at a time.
class EndSignals : public QObject {
    Q_OBJECT

  public:
    explicit EndSignals(std::function<void(int number)> told);
    ~EndSignals() override;
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    std::function<void(int number)> told_;
    QSocketNotifier* notifier_ = nullptr;
};

}  // namespace sandbox
