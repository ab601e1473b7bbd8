#include "globe/OverlayScene.h"

#include <algorithm>
#include <utility>

namespace sandbox {

std::uint64_t OverlayScene::ownNumbers() {
    static std::uint64_t scenes = 0;
    return ++scenes << 40U;
}

OverlayScene::Id OverlayScene::add(Shapes shapes, std::optional<OverlayReference> reference, bool shown,
                                   std::string directory) {
    const Id id = ++lastId_;
    entries_.emplace(
        id, Entry{id, std::move(directory), std::move(shapes), std::move(reference), shown, ++lastRevision_});
    report(id);
    return id;
}

void OverlayScene::replace(Id id, Shapes shapes) {
    const auto found = entries_.find(id);
    if (found == entries_.end()) return;
    found->second.shapes = std::move(shapes);
    found->second.revision = ++lastRevision_;
    report(id);
}

void OverlayScene::setReference(Id id, std::optional<OverlayReference> reference) {
    const auto found = entries_.find(id);
    if (found == entries_.end() || found->second.reference == reference) return;
    found->second.reference = std::move(reference);
    found->second.revision = ++lastRevision_;
    report(id);
}

void OverlayScene::setShown(Id id, bool shown) {
    const auto found = entries_.find(id);
    if (found == entries_.end() || found->second.shown == shown) return;
    found->second.shown = shown;
    report(id);
}

void OverlayScene::remove(Id id) {
    if (entries_.erase(id) > 0) report(id);
}

void OverlayScene::clear() {
    if (entries_.empty()) return;
    entries_.clear();
    report(0);
    forgetChanges(recent_.size());
}

const OverlayScene::Entry* OverlayScene::find(Id id) const {
    const auto found = entries_.find(id);
    return found == entries_.end() ? nullptr : &found->second;
}

std::optional<std::span<const OverlayScene::Id>> OverlayScene::changedSince(std::uint64_t changes) const {
    if (changes < forgotten_ || changes > this->changes()) return std::nullopt;
    return std::span(recent_).subspan(static_cast<std::size_t>(changes - forgotten_));
}

void OverlayScene::forgetChanges(std::size_t count) {
    forgotten_ += count;
    recent_.erase(recent_.begin(), recent_.begin() + static_cast<std::ptrdiff_t>(count));
    mostEntries_ = entries_.size();
}

void OverlayScene::report(Id id) {
    // Who has not asked for so long looks at all entries as quickly.
    constexpr std::size_t kFew = 1000;
    mostEntries_ = std::max(mostEntries_, entries_.size());
    if (recent_.size() > 2 * (mostEntries_ + kFew)) forgetChanges(recent_.size() / 2);
    recent_.push_back(id);
    if (changed_) changed_();
}

}  // namespace sandbox
