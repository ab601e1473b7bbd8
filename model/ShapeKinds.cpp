#include "model/ShapeKinds.h"

#include <algorithm>
#include <array>

#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "model/ShapeRegistry.h"

namespace OverlayEditor {
namespace {

using Block = halCore::ZEL::ShapeType;
using S = Serializer;
using Radii = ShapeKind::Radii;
using Height = ShapeKind::Height;
using Sector = ShapeKind::Sector;

template <typename Concrete, auto... subtype>
std::unique_ptr<Shape> make(const Preferences& preferences) {
    return std::make_unique<Concrete>(preferences, subtype...);
}
template <CylinderShape::Subtype subtype>
constexpr auto* circular = &make<CylinderShape, subtype>;

// clang-format off
constexpr std::array kKinds{
    ShapeKind{"Free Draw", make<FreeDrawShape>, Block::Line, S::Line, S::None},
    ShapeKind{"Text", make<AnnotationShape>, Block::Annotation, S::Annotation, S::Annotation},
    ShapeKind{"Line", make<PolygonShape, PolygonShape::Line>, Block::Line, S::Line, S::Line},
    ShapeKind{"Polygon", make<PolygonShape, PolygonShape::Polygon>, Block::Polygon, S::Polygon, S::Polygon},
    ShapeKind{"Rectangle", make<RectangleShape, RectangleShape::Rectangle>, Block::Polygon, S::Rectangle, S::Rectangle},
    ShapeKind{"Triangle", make<RectangleShape, RectangleShape::Triangle>, Block::Polygon, S::Polygon, S::None},
    ShapeKind{"Circle", circular<CylinderShape::Circle>, Block::Circle, S::Circle, S::Circle, Radii::One},
    ShapeKind{"Ellipse", circular<CylinderShape::Ellipse>, Block::Ellipse, S::Ellipse, S::Ellipse, Radii::Two, Height::Flat, Sector::Kept},
    ShapeKind{"Arc", circular<CylinderShape::Arc>, Block::Arc, S::Arc, S::Arc, Radii::Two, Height::Flat, Sector::Drawn},
    ShapeKind{"Cylinder", circular<CylinderShape::Cylinder>, Block::Cylinder, S::Cylinder, S::Cylinder, Radii::Two, Height::Own},
    ShapeKind{"Wedge", circular<CylinderShape::Wedge>, Block::Cylinder, S::Cylinder, S::Wedge, Radii::Two, Height::Own, Sector::Drawn},
    ShapeKind{"Sphere", circular<CylinderShape::Sphere>, Block::Sphere, S::Sphere, S::Sphere, Radii::One, Height::Radius, Sector::None, true},
    ShapeKind{"Hemisphere", circular<CylinderShape::Hemisphere>, Block::Hemisphere, S::Hemisphere, S::Hemisphere, Radii::One, Height::Radius},
    ShapeKind{"Ellipsoid", circular<CylinderShape::Ellipsoid>, Block::Ellipsoid, S::Ellipsoid, S::Ellipsoid, Radii::Two, Height::Own, Sector::None, true},
    ShapeKind{"Cone", circular<CylinderShape::Cone>, Block::Cone, S::Cone, S::Cone, Radii::One, Height::Own},
    ShapeKind{"Orbit", make<OrbitShape>, Block::Orbit, S::Orbit, S::Orbit, Radii::One}};
// clang-format on
static_assert(kKinds.size() == ShapeKind::Orbit + 1);

}  // namespace

std::span<const ShapeKind> shapeKinds() {
    return kKinds;
}

const ShapeKind& shapeKind(ShapeKind::Id id) {
    return kKinds[static_cast<std::size_t>(id)];
}

const ShapeKind* kindReadFrom(Serializer::ShapeType type) {
    // To the editor points and single segments are a line.
    if (type == S::Points || type == S::LineSegs) type = S::Line;
    const auto found = std::ranges::find(kKinds, type, &ShapeKind::read);
    return type == S::None || found == kKinds.end() ? nullptr : &*found;
}

void addAllKinds(ShapeRegistry& registry, const Preferences& preferences) {
    for (const ShapeKind& kind : kKinds) registry.addPrototype(*kind.make(preferences));
}

}  // namespace OverlayEditor
