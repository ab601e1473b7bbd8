#include "pi/EntryScope.h"

#include <utility>
#include <vector>

#include "pi/Guard.h"

namespace {

struct Waiting {
    EntryScope::Key key;
    std::function<void()> work;
};

int openEntries = 0;
std::vector<Waiting> waiting;
std::vector<std::function<void()>> lastThings;

void perform(const std::function<void()>& work) {
    guarded("What had to wait", 0, [&] {
        work();
        return 0;
    });
}

}  // namespace

EntryScope::At EntryScope::at_ = At::Us;

EntryScope::EntryScope() : before_(std::exchange(at_, At::Us)) {
    ++openEntries;
}

EntryScope::~EntryScope() {
    if (openEntries == 1) {
        // More may come while this is done. A host that answers each call with another event would keep us
        // here for ever: then the last ones wait until it enters again, which it does with each frame.
        constexpr int kTurns = 8;
        for (int turn = 0; turn < kTurns && !waiting.empty(); ++turn)
            for (const Waiting& each : std::exchange(waiting, {})) perform(each.work);
        for (int turn = 0; turn < kTurns && !lastThings.empty(); ++turn)
            for (const auto& last : std::exchange(lastThings, {})) perform(last);
    }
    --openEntries;
    at_ = before_;
}

bool EntryScope::isOpen() {
    return openEntries > 0;
}

void EntryScope::wait(const Key& key, std::function<void()> work) {
    std::erase_if(waiting, [&](const Waiting& each) { return each.key == key; });
    waiting.push_back({key, std::move(work)});
}

void EntryScope::atEnd(std::function<void()> last) {
    lastThings.push_back(std::move(last));
}

void EntryScope::clear() {
    waiting.clear();
}
