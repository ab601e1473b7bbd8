#pragma once

#include <QTimer>
#include <functional>
#include <optional>

#include "common/Work.h"

namespace sandbox {

/// Goes on with one work at a time in slices, between which the event loop runs, and says when it is done.
class WorkInTurns {
  public:
    WorkInTurns();

    /// Begins at once: what is small is done when this returns. Work that is not done yet is given up.
    void begin(Work work, std::function<void()> done);
    bool goesOn() const { return work_.has_value(); }

  private:
    void goOn();

    std::optional<Work> work_;
    std::function<void()> done_;
    QTimer turn_;
};

}  // namespace sandbox
