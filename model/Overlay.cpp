#include "model/Overlay.h"

#include <algorithm>
#include <utility>

namespace OverlayEditor {

Overlay::~Overlay() {
    clearShapes(true);
}

void Overlay::addShape(Shape* shape) {
    if (!shape || orders_.contains(shape)) return;
    shape->setAttachedPlatformId(attachedPlatformId_, pointConverter_, false);
    shape->setActive(true);
    shape->setShown(true);
    const std::uint64_t order = nextOrder_++;
    shapes_.push_back(shape);
    orders_.emplace(shape, order);
    byName_.insert({shape->name(), order, shape});
    shape->setNames(this);
}

void Overlay::removeShape(Shape* shape) {
    const auto known = orders_.find(shape);
    if (known == orders_.end()) return;
    const std::uint64_t order = known->second;
    // The list is sorted by order.
    const auto at =
        std::lower_bound(shapes_.begin(), shapes_.end(), order,
                         [this](Shape* entry, auto wanted) { return orders_.at(entry) < wanted; });
    shapes_.erase(at);
    byName_.erase({shape->name(), order, shape});
    orders_.erase(known);
    shape->setNames(nullptr);
}

void Overlay::renamed(Shape& shape, const std::string& oldName) {
    const std::uint64_t order = orders_.at(&shape);
    byName_.erase({oldName, order, &shape});
    byName_.insert({shape.name(), order, &shape});
}

Shape* Overlay::findShape(const std::string& name) const {
    const auto found = byName_.lower_bound(std::string_view(name));
    return found != byName_.end() && found->name == name ? found->shape : nullptr;
}

void Overlay::clearShapes(bool destroying) {
    // Emptied first: a dying shape's tool, or the host, may look at the overlay.
    const std::vector<Shape*> shapes = std::exchange(shapes_, {});
    byName_.clear();
    orders_.clear();
    for (Shape* shape : shapes) shape->setNames(nullptr);
    for (Shape* shape : shapes) {
        if (!destroying) shape->deleteGui();
        delete shape;
    }
}

// Any change of a shape ends in the host, which may call back: shapes may be gone when their turn comes.

void Overlay::setShown(bool shown) {
    for (Shape* shape : shapes())
        if (orders_.contains(shape)) shape->setShown(shown);
}

void Overlay::setActive(bool active) {
    for (Shape* shape : shapes())
        if (orders_.contains(shape)) shape->setActive(active);
}

void Overlay::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    attachedPlatformId_ = id;
    pointConverter_ = converter;
    for (Shape* shape : shapes())
        if (orders_.contains(shape)) shape->setAttachedPlatformId(id, converter, anchorCenter);
}

int Overlay::serializeShapes(Serializer& serializer) const {
    serializer.setPointConverter(pointConverter());
    int result = -1;
    for (Shape* shape : shapes_)
        if (shape->serialize(serializer) == 0) result = 0;
    return result;
}

}  // namespace OverlayEditor
