#pragma once

#include <QObject>
#include <functional>

class QSocketNotifier;

namespace sandbox {

/// SIGTERM, SIGHUP and SIGINT, told from the event loop, so that the program ends as a person ends it. The
/// second one of a kind ends it at once. One object at a time.
class EndSignals : public QObject {
    Q_OBJECT

  public:
    explicit EndSignals(std::function<void(int number)> told);
    ~EndSignals() override;

  private:
    QSocketNotifier* notifier_ = nullptr;
};

}  // namespace sandbox
