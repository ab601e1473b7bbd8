#pragma once

#include <memory>
#include <string>

#include "model/Shape.h"
#include "model/ShapeState.h"

namespace OverlayEditor {

/// A copy that stands as the shape does, attached or not, by the same given numbers, but is no block of a
/// file yet; what the shape's block says beside the editor's fields it says, too. It shows nothing until its
/// first refresh.
std::unique_ptr<Shape> copyOf(const Shape& shape, const std::string& name);

/// The name without a number behind a blank: "Circle" of "Circle 12". A number alone stays.
std::string nameWithoutNumber(const std::string& name);

/// What one kind has and the other lacks stays as it is. The colour of a label is that of lines.
void takeStyle(ShapeState& state, const ShapeState& from);

}  // namespace OverlayEditor
