#include "model/ShapeKinds.h"

#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"

namespace OverlayEditor {

void addAllKinds(ShapeRegistry& registry, const Preferences& preferences) {
    registry.addPrototype(FreeDrawShape(preferences));
    registry.addPrototype(AnnotationShape(preferences));
    for (const auto subtype : {PolygonShape::Line, PolygonShape::Polygon})
        registry.addPrototype(PolygonShape(preferences, subtype));
    for (const auto subtype : {RectangleShape::Rectangle, RectangleShape::Triangle})
        registry.addPrototype(RectangleShape(preferences, subtype));
    for (int subtype = CylinderShape::Circle; subtype <= CylinderShape::Cone; ++subtype)
        registry.addPrototype(CylinderShape(preferences, static_cast<CylinderShape::Subtype>(subtype)));
    registry.addPrototype(OrbitShape(preferences));
}

}  // namespace OverlayEditor
