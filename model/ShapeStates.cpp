#include "model/ShapeStates.h"

#include <algorithm>

namespace OverlayEditor {

ShapeStates::Iterator ShapeStates::lower_bound(std::uint64_t number) const {
    return std::ranges::lower_bound(entries_, number, {}, &Entry::first);
}

ShapeStates::Iterator ShapeStates::find(std::uint64_t number) const {
    const auto at = lower_bound(number);
    return at != end() && at->first == number ? at : end();
}

ShapeStatePtr ShapeStates::of(std::uint64_t number) const {
    const auto at = find(number);
    return at != end() ? at->second : nullptr;
}

void ShapeStates::change(std::span<const Entry> changes) {
    // Those that stay have their places; most changes are of them, or come behind all.
    std::vector<Entry> fresh;
    bool anyGone = false;
    for (const Entry& change : changes) {
        const auto at = std::ranges::lower_bound(entries_, change.first, {}, &Entry::first);
        if (at != entries_.end() && at->first == change.first) {
            at->second = change.second;
            anyGone = anyGone || !change.second;
        } else if (change.second) {
            fresh.push_back(change);
        }
    }
    if (anyGone) std::erase_if(entries_, [](const Entry& entry) { return !entry.second; });
    const auto known = static_cast<std::ptrdiff_t>(entries_.size());
    const bool isBehind = fresh.empty() || entries_.empty() || entries_.back().first < fresh.front().first;
    entries_.insert(entries_.end(), std::make_move_iterator(fresh.begin()),
                    std::make_move_iterator(fresh.end()));
    if (!isBehind) std::ranges::inplace_merge(entries_, entries_.begin() + known, {}, &Entry::first);
}

}  // namespace OverlayEditor
