#include "model/Overlay.h"

#include <algorithm>
#include <utility>

#include "model/Carried.h"

namespace OverlayEditor {

Overlay::~Overlay() {
    clearShapes(true);
}

void Overlay::addShape(Shape* shape) {
    if (!shape || contains(shape)) return;
    ++revision_;
    const Shape::Survival survives(*shape);
    const std::uint64_t attachment = attachments_;
    shape->setAttachedPlatformId(attachedPlatformId_, pointConverter_, false);
    if (survives) shape->setActive(true);
    if (survives) shape->setShown(true);
    if (!survives || contains(shape)) return;
    const std::uint64_t order = nextOrder_++;
    places_.push_back({order, shape});
    entries_.emplace(shape, byName_.insert({shape->name(), order, shape}).first);
    shape->setKeeper(this);
    if (attachments_ == attachment) return;
    // The host took the chance to have the overlay attached anew.
    shape->setAttachedPlatformId(0, nullptr, false);
    if (survives) shape->setAttachedPlatformId(attachedPlatformId_, pointConverter_, false);
}

std::vector<Shape*> Overlay::shapes() const {
    std::vector<Shape*> shapes;
    shapes.reserve(entries_.size());
    for (const Place& place : places_)
        if (place.shape) shapes.push_back(place.shape);
    return shapes;
}

void Overlay::removeShape(Shape* shape) {
    if (forget_(shape)) shape->setKeeper(nullptr);
}

bool Overlay::forget_(const Shape* shape) {
    const auto known = entries_.find(shape);
    if (known == entries_.end()) return false;
    ++revision_;
    const auto at = std::lower_bound(places_.begin(), places_.end(), known->second->order,
                                     [](const Place& place, auto wanted) { return place.order < wanted; });
    at->shape = nullptr;
    byName_.erase(known->second);
    entries_.erase(known);
    if (places_.size() > 2 * entries_.size())
        std::erase_if(places_, [](const Place& place) { return !place.shape; });
    return true;
}

void Overlay::deleted(const Shape* shape) {
    forget_(shape);
}

void Overlay::renamed(Shape& shape) {
    ++revision_;
    auto& entry = entries_.at(&shape);
    const std::uint64_t order = entry->order;
    byName_.erase(entry);
    entry = byName_.insert({shape.name(), order, &shape}).first;
}

Shape* Overlay::findShape(const std::string& name) const {
    const auto found = byName_.lower_bound(std::string_view(name));
    return found != byName_.end() && found->name == name ? found->shape : nullptr;
}

void Overlay::clearShapes(bool destroying) {
    ++revision_;
    // Emptied first: a dying shape's tool, or the host, may look at the overlay.
    std::vector<std::pair<Shape*, Shape::Survival>> dying;
    dying.reserve(entries_.size());
    for (Shape* shape : shapes()) {
        shape->setKeeper(nullptr);
        dying.emplace_back(shape, *shape);
    }
    places_.clear();
    byName_.clear();
    entries_.clear();
    for (const auto& [shape, survives] : dying) {
        if (survives && !destroying) shape->deleteGui();
        if (survives) delete shape;
    }
}

// Any change of a shape ends in the host, which may call back: shapes may be gone when their turn comes.

void Overlay::setShown(bool shown) {
    for (Shape* shape : shapes())
        if (contains(shape)) shape->setShown(shown);
}

void Overlay::setActive(bool active) {
    for (Shape* shape : shapes())
        if (contains(shape)) shape->setActive(active);
}

void Overlay::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    ++revision_;
    attachedPlatformId_ = id;
    pointConverter_ = converter;
    const std::uint64_t attachment = ++attachments_;
    for (Shape* shape : shapes()) {
        if (attachments_ != attachment) return;  // set anew meanwhile, for all shapes
        if (contains(shape)) shape->setAttachedPlatformId(id, converter, anchorCenter);
    }
}

void Overlay::carry(const ReferenceMove& move) {
    ++revision_;
    for (Shape* shape : shapes()) {
        if (!entries_.contains(shape) || shape->attachedPlatformId() == 0) continue;
        if (auto* const carried = dynamic_cast<Carried*>(shape)) carried->carry(move);
    }
}

int Overlay::serializeShapes(Serializer& serializer) const {
    serializer.setPointConverter(pointConverter());
    int result = -1;
    for (Shape* shape : shapes())
        if (contains(shape) && shape->serialize(serializer) == 0) result = 0;
    return result;
}

}  // namespace OverlayEditor
