#include "globe/OverlayScene.h"

#include <utility>

namespace sandbox {

OverlayScene::Id OverlayScene::add(Shapes shapes, std::optional<OverlayReference> reference, bool shown,
                                   std::string directory) {
    const Id id = ++lastId_;
    entries_.emplace(
        id, Entry{id, std::move(directory), std::move(shapes), std::move(reference), shown, ++lastRevision_});
    report();
    return id;
}

void OverlayScene::replace(Id id, Shapes shapes) {
    const auto found = entries_.find(id);
    if (found == entries_.end()) return;
    found->second.shapes = std::move(shapes);
    found->second.revision = ++lastRevision_;
    report();
}

void OverlayScene::setReference(Id id, std::optional<OverlayReference> reference) {
    const auto found = entries_.find(id);
    if (found == entries_.end() || found->second.reference == reference) return;
    found->second.reference = std::move(reference);
    found->second.revision = ++lastRevision_;
    report();
}

void OverlayScene::setShown(Id id, bool shown) {
    const auto found = entries_.find(id);
    if (found == entries_.end() || found->second.shown == shown) return;
    found->second.shown = shown;
    report();
}

void OverlayScene::remove(Id id) {
    if (entries_.erase(id) > 0) report();
}

void OverlayScene::clear() {
    if (entries_.empty()) return;
    entries_.clear();
    report();
}

const OverlayScene::Entry* OverlayScene::find(Id id) const {
    const auto found = entries_.find(id);
    return found == entries_.end() ? nullptr : &found->second;
}

void OverlayScene::report() const {
    if (changed_) changed_();
}

}  // namespace sandbox
