#include "model/ShapeRegistry.h"

namespace OverlayEditor {

std::size_t ShapeRegistry::addPrototype(const Shape& prototype) {
    const std::string name = prototype.name();
    for (std::size_t i = 0; i < prototypes_.size(); ++i)
        if (prototypes_[i]->name() == name) return i;
    prototypes_.emplace_back(prototype.clone());
    return prototypes_.size() - 1;
}

std::vector<Shape*> ShapeRegistry::getShapes() const {
    std::vector<Shape*> shapes;
    shapes.reserve(prototypes_.size());
    for (const auto& prototype : prototypes_) shapes.push_back(prototype.get());
    return shapes;
}

Shape* ShapeRegistry::getShapeByIndex(unsigned long index) const {
    return index < prototypes_.size() ? prototypes_[index].get() : nullptr;
}

Shape* ShapeRegistry::getShapeByName(const std::string& name) const {
    for (const auto& prototype : prototypes_)
        if (prototype->name() == name) return prototype.get();
    return nullptr;
}

}  // namespace OverlayEditor
