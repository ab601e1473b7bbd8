#pragma once

#include <memory>
#include <span>

#include "format/Serializer.h"
#include "format/ZelShape.h"

namespace OverlayEditor {

class Preferences;
class Shape;
class ShapeRegistry;

/// What there is to know of a kind of shape before there is a shape: names, files, and which numbers one has.
/// Shapes, their tools and panels, and both ways through files read it here.
struct ShapeKind {
    /// In the order in which the editor offers them, and in which the table has them.
    enum Id {
        FreeDraw,
        Text,
        Line,
        Polygon,
        Rectangle,
        Triangle,
        Circle,  ///< the circular ones in the order of CylinderShape::Subtype
        Ellipse,
        Arc,
        Cylinder,
        Wedge,
        Sphere,
        Hemisphere,
        Ellipsoid,
        Cone,
        Orbit
    };
    enum class Radii { None, One, Two };
    enum class Height {
        Flat,
        Radius,  ///< as high as its radius is long
        Own      ///< a number of its own, which the user gives
    };
    enum class Sector {
        None,
        Kept,  ///< what a file says is kept for the file; the shape is whole
        Drawn  ///< the user gives its bounds
    };

    /// How the editor calls it: a shape's first name, and its prototype's.
    const char* name;
    std::unique_ptr<Shape> (*make)(const Preferences& preferences);
    /// What its block in a file is called.
    halCore::ZEL::ShapeType block;
    /// What it tells a serializer that it is.
    Serializer::ShapeType written;
    /// What a loader says that is read as this kind; None when its blocks are read as another kind.
    Serializer::ShapeType read;
    Radii radii = Radii::None;
    Height height = Height::Flat;
    Sector sector = Sector::None;
    /// As far below its centre as above it.
    bool reachesBelow = false;
};

std::span<const ShapeKind> shapeKinds();
const ShapeKind& shapeKind(ShapeKind::Id id);
/// The kind that a loader's shape becomes, null for none.
const ShapeKind* kindReadFrom(Serializer::ShapeType type);

/// Registers a prototype of every kind, in their order. The prototypes keep the preferences.
void addAllKinds(ShapeRegistry& registry, const Preferences& preferences);

}  // namespace OverlayEditor
