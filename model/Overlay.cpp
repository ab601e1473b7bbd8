#include "model/Overlay.h"

#include <algorithm>
#include <utility>

namespace OverlayEditor {

Overlay::~Overlay() {
    clearShapes(true);
}

void Overlay::addShape(Shape* shape) {
    if (!shape || entries_.contains(shape)) return;
    shape->setAttachedPlatformId(attachedPlatformId_, pointConverter_, false);
    shape->setActive(true);
    shape->setShown(true);
    const std::uint64_t order = nextOrder_++;
    shapes_.push_back(shape);
    entries_.emplace(shape, byName_.insert({shape->name(), order, shape}).first);
    shape->setKeeper(this);
}

void Overlay::removeShape(Shape* shape) {
    if (forget_(shape)) shape->setKeeper(nullptr);
}

bool Overlay::forget_(const Shape* shape) {
    const auto known = entries_.find(shape);
    if (known == entries_.end()) return false;
    // The list is sorted by order.
    const auto at =
        std::lower_bound(shapes_.begin(), shapes_.end(), known->second->order,
                         [this](Shape* entry, auto wanted) { return entries_.at(entry)->order < wanted; });
    shapes_.erase(at);
    byName_.erase(known->second);
    entries_.erase(known);
    return true;
}

void Overlay::deleted(const Shape* shape) {
    forget_(shape);
}

void Overlay::renamed(Shape& shape) {
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
    // Emptied first: a dying shape's tool, or the host, may look at the overlay.
    const std::vector<Shape*> shapes = std::exchange(shapes_, {});
    byName_.clear();
    entries_.clear();
    for (Shape* shape : shapes) shape->setKeeper(nullptr);
    for (Shape* shape : shapes) {
        if (!destroying) shape->deleteGui();
        delete shape;
    }
}

// Any change of a shape ends in the host, which may call back: shapes may be gone when their turn comes.

void Overlay::setShown(bool shown) {
    for (Shape* shape : shapes())
        if (entries_.contains(shape)) shape->setShown(shown);
}

void Overlay::setActive(bool active) {
    for (Shape* shape : shapes())
        if (entries_.contains(shape)) shape->setActive(active);
}

void Overlay::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    attachedPlatformId_ = id;
    pointConverter_ = converter;
    for (Shape* shape : shapes())
        if (entries_.contains(shape)) shape->setAttachedPlatformId(id, converter, anchorCenter);
}

int Overlay::serializeShapes(Serializer& serializer) const {
    serializer.setPointConverter(pointConverter());
    int result = -1;
    for (Shape* shape : shapes_)
        if (shape->serialize(serializer) == 0) result = 0;
    return result;
}

}  // namespace OverlayEditor
