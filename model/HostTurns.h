#pragma once

#include <chrono>
#include <functional>
#include <utility>
#include <vector>

#include "common/Slice.h"
#include "pi/FunctorTwoParams.h"
#include "pi/Guard.h"
#include "pi/PICommon.h"

namespace OverlayEditor {

/// Work that takes long goes on in turn with the host: a slice of it, then whatever the host has to do, and
/// again.
class HostTurns {
  public:
    /// So long the interface may stand still.
    static constexpr std::chrono::milliseconds kAtOnce{30};

    HostTurns() = default;
    ~HostTurns() { end(); }
    HostTurns(const HostTurns&) = delete;
    HostTurns& operator=(const HostTurns&) = delete;

    /// \param work does some of what there is to do, if there is anything. What was added first comes first;
    ///        all share a slice
    void add(std::function<void(Slice&)> work) { works_.push_back(std::move(work)); }
    /// Has the work called soon, once, as an entry of its own. \return false when the host does not do so
    bool comeBack();
    /// Nothing is called any more.
    void end() {
        callbacks_.disconnect();
        guardedEnd([this] { timeout_.cancel(); });
    }

    int onTimeout(PIObject* sender, void* data);
    int onTurn(PIObject* sender, void* data);

  private:
    std::vector<std::function<void(Slice&)>> works_;
    PICommon::Timeout timeout_;
    CallbackList<HostTurns> callbacks_{this};
    FunctorTwoParams__* const onTimeout_ = callbacks_.make(&HostTurns::onTimeout, Arrival::AtOnce);
    FunctorTwoParams__* const onTurn_ = callbacks_.make(&HostTurns::onTurn);
};

}  // namespace OverlayEditor
