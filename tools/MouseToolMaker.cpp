#include "tools/MouseToolMaker.h"

#include "model/ShapeKinds.h"
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
    if (shape.subtype() >= CylinderShape::NoSubtype) return nullptr;
    if (shape.kind().sector == ShapeKind::Sector::Drawn)
        return MouseToolPtr(new ArcMouseTool(preferences, shape));
    if (shape.kind().radii == ShapeKind::Radii::Two)
        return MouseToolPtr(new ThreePointMouse(preferences, shape));
    return MouseToolPtr(new CircleMouseTool(preferences, shape));
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
