#include "pi/FunctorTwoParams.h"

#include "pi/Guard.h"

std::vector<FunctorTwoParams__*> g_FunctorList;

int CallbackPause::open_ = 0;

void freeFunctors() {
    for (auto* functor : g_FunctorList) delete functor;
    g_FunctorList.clear();
}

int callbackFailed() noexcept {
    return guarded("Callback of a widget, action or timeout", 0, []() -> int { throw; });
}
