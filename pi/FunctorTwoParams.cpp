#include "pi/FunctorTwoParams.h"

#include <optional>
#include <utility>

#include "pi/Guard.h"

std::vector<FunctorTwoParams__*> g_FunctorList;

namespace {

void deleteFunctors() {
    for (auto* functor : g_FunctorList) delete functor;
    g_FunctorList.clear();
}

/// Programs that are no plug-ins have no clean-up; it dies before the list.
struct AtExit {
    ~AtExit() { deleteFunctors(); }
} atExit;

}  // namespace

void freeFunctors() {
    EntryScope::clear();
    deleteFunctors();
}

void callLater(FunctorTwoParams__* callback, const std::int32_t* state) {
    std::optional<std::int32_t> kept;
    if (state) kept = *state;
    EntryScope::wait({callback, kept.value_or(-1)},
                     [callback, kept]() mutable { callback->Call(nullptr, kept ? &*kept : nullptr); });
}

namespace {

std::uint64_t commands = 0;
std::function<void(PIObject*)> commandListener;

}  // namespace

std::uint64_t commandsGiven() {
    return commands;
}

void countCommand(PIObject* sender) {
    ++commands;
    if (!commandListener) return;
    guarded("A command", 0, [&] {
        commandListener(sender);
        return 0;
    });
}

void setCommandListener(std::function<void(PIObject*)> listener) {
    commandListener = std::move(listener);
}

int callbackFailed() noexcept {
    return guarded("Callback of a widget, action or timeout", 0, []() -> int { throw; });
}
