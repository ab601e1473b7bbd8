#pragma once

#include "model/AnnotationShape.h"

namespace OverlayEditor {

/// Whether anything of the shape has a place on the earth now.
inline bool hasPlace(const Shape& shape) {
    const auto [low, high] = shape.boundingBox();
    const auto* const label = dynamic_cast<const AnnotationShape*>(&shape);
    return low.lat() <= high.lat() && (!label || label->hasPoint());
}

/// Whether the shape has a position, wherever it is.
inline bool isBegun(const Shape& shape) {
    return shape.placed().has(0) || shape.placed().has(1) || (!shape.canAttach() && hasPlace(shape));
}

}  // namespace OverlayEditor
