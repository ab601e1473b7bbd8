#include "model/HostTurns.h"

#include <algorithm>
#include <cstdint>

namespace OverlayEditor {

namespace {

constexpr std::int32_t kPauseMilliseconds = 2;

}  // namespace

bool HostTurns::comeBack() {
    if (!timeout_.isArmed()) PICommon::createTimeout(timeout_, kPauseMilliseconds, onTimeout_);
    hostsTurn_ = std::chrono::steady_clock::now();
    return timeout_.isArmed();
}

int HostTurns::onTimeout(PIObject*, void*) {
    timeout_.fired();
    return onTurn_->Call(nullptr, nullptr);
}

int HostTurns::onTurn(PIObject*, void*) {
    const auto turn =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - hostsTurn_);
    Slice slice(0, std::clamp(turn, kAtOnce, kAtMost));
    for (const auto& work : works_) work(slice);
    return 1;
}

}  // namespace OverlayEditor
