#include "tools/MouseToolMaker.h"

#include "tools/AnnotationMouseTool.h"
#include "tools/ArcMouseTool.h"
#include "tools/CircleMouseTool.h"
#include "tools/FreeDrawMouseTool.h"
#include "tools/OrbitMouseTool.h"
#include "tools/PolygonMouseTool.h"
#include "tools/RectangleMouseTool.h"
#include "tools/ThreePointMouse.h"

namespace OverlayEditor {

MouseToolPtr MouseToolMaker::make(const Preferences& preferences, CylinderShape& shape) {
    switch (shape.subtype()) {
        case CylinderShape::Circle:
        case CylinderShape::Sphere:
        case CylinderShape::Hemisphere:
        case CylinderShape::Cone:
            return MouseToolPtr(new CircleMouseTool(preferences, shape));
        case CylinderShape::Arc:
        case CylinderShape::Wedge:
            return MouseToolPtr(new ArcMouseTool(preferences, shape));
        case CylinderShape::Ellipse:
        case CylinderShape::Cylinder:
        case CylinderShape::Ellipsoid:
            return MouseToolPtr(new ThreePointMouse(preferences, shape));
        case CylinderShape::NoSubtype:
            break;
    }
    return nullptr;
}

MouseToolPtr MouseToolMaker::make(const Preferences& preferences, OrbitShape& shape) {
    return MouseToolPtr(new OrbitMouseTool(preferences, shape));
}

MouseToolPtr MouseToolMaker::make(const Preferences& preferences, PolygonShape& shape) {
    return MouseToolPtr(new PolygonMouseTool(preferences, shape));
}

MouseToolPtr MouseToolMaker::make(const Preferences& preferences, RectangleShape& shape) {
    return MouseToolPtr(new RectangleMouseTool(preferences, shape));
}

MouseToolPtr MouseToolMaker::make(const Preferences& preferences, FreeDrawShape& shape) {
    return MouseToolPtr(new FreeDrawMouseTool(preferences, shape));
}

MouseToolPtr MouseToolMaker::make(const Preferences& preferences, AnnotationShape& shape) {
    return MouseToolPtr(new AnnotationMouseTool(preferences, shape));
}

}  // namespace OverlayEditor
