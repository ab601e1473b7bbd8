#include "model/HostTurns.h"

#include <cstdint>

namespace OverlayEditor {

namespace {

constexpr std::int32_t kPauseMilliseconds = 2;

}  // namespace

bool HostTurns::comeBack() {
    if (!timeout_.isArmed()) PICommon::createTimeout(timeout_, kPauseMilliseconds, onTimeout_);
    return timeout_.isArmed();
}

int HostTurns::onTimeout(PIObject*, void*) {
    timeout_.fired();
    return onTurn_->Call(nullptr, nullptr);
}

int HostTurns::onTurn(PIObject*, void*) {
    Slice slice(0, kAtOnce);
    for (const auto& work : works_) work(slice);
    return 1;
}

}  // namespace OverlayEditor
