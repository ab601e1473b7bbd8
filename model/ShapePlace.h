#pragma once

#include "model/AnnotationShape.h"

namespace OverlayEditor {

/// Whether anything of the shape has a place on the earth. (The box of a label says so also before it has
/// one.)
inline bool hasPlace(const Shape& shape) {
    if (const auto* const label = dynamic_cast<const AnnotationShape*>(&shape)) return label->hasPoint();
    const auto [low, high] = shape.boundingBox();
    return low.lat() <= high.lat();
}

}  // namespace OverlayEditor
