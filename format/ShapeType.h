#pragma once

namespace halCore::ZEL {

/// What a block describes. The values are part of the format's data model and never change.
enum class ShapeType : int {
    None = 0,
    Annotation = 1,
    Points = 2,
    Line = 3,
    LineSegs = 4,
    Polygon = 5,
    Arc = 6,
    Circle = 7,
    Ellipse = 8,
    Ellipsoid = 9,
    Cylinder = 10,
    Sphere = 11,
    Hemisphere = 12,
    LatLonAltBox = 13,
    Cone = 14,
    ImageOverlay = 15,
    Orbit = 16
};

}  // namespace halCore::ZEL
