#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <chrono>

namespace sandbox {

/// Watches how long the window's thread is kept from its events, once it has been asked.
class TurnWatch {
  public:
    struct Longest {
        double clock = 0.0;      ///< milliseconds between two turns
        double processor = 0.0;  ///< that the thread was at work in them, at most
    };

    TurnWatch();
    /// Since the last call; nothing at the first one.
    Longest take();

  private:
    void turn();

    QTimer timer_;
    QElapsedTimer sinceTurn_;
    std::chrono::nanoseconds atWork_{};  ///< the thread, up to that turn
    Longest longest_;
};

}  // namespace sandbox
