#include "model/LostWatch.h"

#include "model/Journal.h"

namespace OverlayEditor {

namespace {

constexpr std::int32_t kPauseMilliseconds = 1000;
constexpr int kMostLooks = 20;

}  // namespace

int LostWatch::onTimeout(PIObject*, void*) {
    timeout_.fired();
    return onTurn_->Call(nullptr, nullptr);
}

int LostWatch::onTurn(PIObject*, void*) {
    look_();
    return 1;
}

void LostWatch::look_() {
    if (!abandonedJournals().empty())
        found_();
    else if (++looks_ < kMostLooks && journalsAreHeld())
        PICommon::createTimeout(timeout_, kPauseMilliseconds, onTimeout_);
}

}  // namespace OverlayEditor
