#pragma once

#include <type_traits>

#include "format/ZelShapes.h"

namespace halCore::ZEL {

/// Whether shapes of a type are of the class, or of one that is derived from it.
template <typename Class>
constexpr bool isOf(ShapeType type) {
    switch (type) {
        case ShapeType::None:
            return false;
        case ShapeType::Annotation:
            return std::is_base_of_v<Class, Annotation>;
        case ShapeType::Points:
            return std::is_base_of_v<Class, Points>;
        case ShapeType::Line:
            return std::is_base_of_v<Class, Line>;
        case ShapeType::LineSegs:
            return std::is_base_of_v<Class, LineSegs>;
        case ShapeType::Polygon:
            return std::is_base_of_v<Class, Polygon>;
        case ShapeType::Arc:
            return std::is_base_of_v<Class, Arc>;
        case ShapeType::Circle:
            return std::is_base_of_v<Class, Circle>;
        case ShapeType::Ellipse:
            return std::is_base_of_v<Class, Ellipse>;
        case ShapeType::Ellipsoid:
            return std::is_base_of_v<Class, Ellipsoid>;
        case ShapeType::Cylinder:
            return std::is_base_of_v<Class, Cylinder>;
        case ShapeType::Sphere:
            return std::is_base_of_v<Class, Sphere>;
        case ShapeType::Hemisphere:
            return std::is_base_of_v<Class, Hemisphere>;
        case ShapeType::LatLonAltBox:
            return std::is_base_of_v<Class, LatLonAltBox>;
        case ShapeType::Cone:
            return std::is_base_of_v<Class, Cone>;
        case ShapeType::ImageOverlay:
            return std::is_base_of_v<Class, ImageOverlay>;
        case ShapeType::Orbit:
            return std::is_base_of_v<Class, Orbit>;
    }
    return false;
}

/// The shape as one of a class, null when it is none. What `dynamic_cast` tells, but from the type: of every
/// shape of a large file this is asked many times.
template <typename Class>
const Class* shapeAs(const ZelShape& shape) {
    return isOf<Class>(shape.shapeType()) ? static_cast<const Class*>(&shape) : nullptr;
}
/// \param type the shape's, of whom it is asked more often
template <typename Class>
Class* shapeAs(ZelShape& shape, ShapeType type) {
    return isOf<Class>(type) ? static_cast<Class*>(&shape) : nullptr;
}
template <typename Class>
Class* shapeAs(ZelShape& shape) {
    return shapeAs<Class>(shape, shape.shapeType());
}

}  // namespace halCore::ZEL
