#include "gdal/NewShape.h"

namespace exchange {

namespace ZEL = halCore::ZEL;

ZEL::ZelShapePtr newShape(ZEL::ShapeType kind, bool relative) {
    switch (kind) {
        case ZEL::ShapeType::None:
            break;
        case ZEL::ShapeType::Annotation:
            return std::make_shared<ZEL::Annotation>(relative);
        case ZEL::ShapeType::Points:
            return std::make_shared<ZEL::Points>(relative);
        case ZEL::ShapeType::Line:
            return std::make_shared<ZEL::Line>(relative);
        case ZEL::ShapeType::LineSegs:
            return std::make_shared<ZEL::LineSegs>(relative);
        case ZEL::ShapeType::Polygon:
            return std::make_shared<ZEL::Polygon>(relative);
        case ZEL::ShapeType::Arc:
            return std::make_shared<ZEL::Arc>(relative);
        case ZEL::ShapeType::Circle:
            return std::make_shared<ZEL::Circle>(relative);
        case ZEL::ShapeType::Ellipse:
            return std::make_shared<ZEL::Ellipse>(relative);
        case ZEL::ShapeType::Ellipsoid:
            return std::make_shared<ZEL::Ellipsoid>(relative);
        case ZEL::ShapeType::Cylinder:
            return std::make_shared<ZEL::Cylinder>(relative);
        case ZEL::ShapeType::Sphere:
            return std::make_shared<ZEL::Sphere>(relative);
        case ZEL::ShapeType::Hemisphere:
            return std::make_shared<ZEL::Hemisphere>(relative);
        case ZEL::ShapeType::LatLonAltBox:
            return std::make_shared<ZEL::LatLonAltBox>(relative);
        case ZEL::ShapeType::Cone:
            return std::make_shared<ZEL::Cone>(relative);
        case ZEL::ShapeType::ImageOverlay:
            return std::make_shared<ZEL::ImageOverlay>(relative);
        case ZEL::ShapeType::Orbit:
            return std::make_shared<ZEL::Orbit>(relative);
    }
    return nullptr;
}

bool hasOffsets(const ZEL::ZelShape& shape) {
    return shape.isRelative() && shape.shapeType() != ZEL::ShapeType::LatLonAltBox &&
           shape.shapeType() != ZEL::ShapeType::ImageOverlay;
}

}  // namespace exchange
