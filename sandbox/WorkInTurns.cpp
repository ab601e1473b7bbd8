#include "sandbox/WorkInTurns.h"

#include <chrono>
#include <utility>

namespace sandbox {

WorkInTurns::WorkInTurns() {
    turn_.setSingleShot(true);
    QObject::connect(&turn_, &QTimer::timeout, &turn_, [this] { goOn(); });
}

void WorkInTurns::begin(Work work, std::function<void()> done) {
    work_.emplace(std::move(work));
    done_ = std::move(done);
    goOn();
}

void WorkInTurns::goOn() {
    // What is small is done at once, whatever the clock says.
    constexpr std::size_t atLeast = 20'000;
    constexpr std::chrono::milliseconds atOnce{15};
    Slice slice(atLeast, atOnce);
    turn_.stop();
    // What throws is given up.
    std::optional<Work> work = std::exchange(work_, std::nullopt);
    if (!work->goOn(slice)) {
        work_ = std::move(work);
        turn_.start(0);
        return;
    }
    // It may begin other work.
    if (const auto done = std::exchange(done_, nullptr)) done();
}

}  // namespace sandbox
