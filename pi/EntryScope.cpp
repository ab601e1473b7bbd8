#include "pi/EntryScope.h"

#include <utility>
#include <vector>

#include "pi/Guard.h"

namespace {

int openEntries = 0;
std::function<void()> outermostEnds;
std::vector<std::function<void()>> lastThings;

void call(const std::function<void()>& function) {
    guarded("postponed event", 0, [&] {
        function();
        return 0;
    });
}

}  // namespace

EntryScope::EntryScope() {
    ++openEntries;
}

EntryScope::~EntryScope() {
    if (openEntries == 1) {
        // The listener may be taken out meanwhile.
        if (const auto listener = outermostEnds) call(listener);
        for (const auto& last : std::exchange(lastThings, {})) call(last);
    }
    --openEntries;
}

bool EntryScope::isNested() {
    return openEntries > 1;
}

void EntryScope::setListener(std::function<void()> listener) {
    outermostEnds = std::move(listener);
}

void EntryScope::atEnd(std::function<void()> last) {
    lastThings.push_back(std::move(last));
}
