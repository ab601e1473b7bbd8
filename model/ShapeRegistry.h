#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "model/Shape.h"

namespace OverlayEditor {

/// One prototype of every kind of shape, in registration order; its name is the kind's name. A user's
/// shape is a clone of one.
class ShapeRegistry {
  public:
    /// Keeps a clone, unless a prototype of that name is present. \return the prototype's index
    std::size_t addPrototype(const Shape& prototype);
    std::size_t numPrototypes() const { return prototypes_.size(); }
    /// The registry's.
    std::vector<Shape*> getShapes() const;
    Shape* getShapeByIndex(unsigned long index) const;
    Shape* getShapeByName(const std::string& name) const;

  private:
    std::vector<std::unique_ptr<Shape>> prototypes_;
};

}  // namespace OverlayEditor
