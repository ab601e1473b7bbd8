#include "pi/EntryScope.h"

#include <utility>

#include "pi/Guard.h"

namespace {

int openEntries = 0;
std::function<void()> outermostEnds;

}  // namespace

EntryScope::EntryScope() {
    ++openEntries;
}

EntryScope::~EntryScope() {
    if (openEntries == 1 && outermostEnds)
        guarded("postponed event", 0, [] {
            // The listener may be taken out meanwhile.
            const auto listener = outermostEnds;
            listener();
            return 0;
        });
    --openEntries;
}

bool EntryScope::isNested() {
    return openEntries > 1;
}

void EntryScope::setListener(std::function<void()> listener) {
    outermostEnds = std::move(listener);
}
