#pragma once

#include <optional>
#include <string>

#include "geo/TypedStep.h"
#include "model/Shape.h"

namespace OverlayEditor {

/// What became of a step.
struct StepTaken {
    /// What the shape has from it, in the user's units: "Radius: 5.00 nm".
    std::string done;
    /// Why it has not; empty when it has. The shape is then as it was.
    std::string reason;
    /// Where the step leads, if it leads to a place.
    std::optional<halCore::Vec3> place;
};

/// Does to a shape what the next click of its tool would, at exactly the place that was typed; and gives it a
/// number that it lacks still. A step counts from the last point or the centre; before there is any, of an
/// attached shape from what it is attached to, about which a length alone lays the shape.
/// \param altitude in metres, of a place that was typed without one
StepTaken takeStep(Shape& shape, const UTILS::TypedStep& step, double altitude);

/// Whether what the shape is attached to, or another reference, is what typed numbers count from.
inline bool takesOffsets(const Shape& shape) {
    return shape.placed().frame() != nullptr;
}

}  // namespace OverlayEditor
