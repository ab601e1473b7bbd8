#pragma once

#include <cstdint>
#include <vector>

#include "geo/Ecef.h"

namespace sandbox {

/// A part of the earth as a square picture: the place of a picture element is Lambert's azimuthal equal-area
/// projection of the unit sphere that the ellipsoid becomes (`toUnitSphere`), seen from the part's middle.
/// Near the middle it is exact to the last digit, which is what a view from close by needs.
struct MapRegion {
    double lat = 0.0;  ///< of the middle, radians
    double lon = 0.0;
    /// Angle at the earth's centre from the middle to the middle of an edge, at most 1.02: the field is right
    /// in the circle of this radius.
    double radius = 0.1;
    int size = 0;  ///< picture elements along an edge

    /// The frame at the middle, where the earth is the unit sphere.
    struct Frame {
        halCore::Ecef middle, east, north;
    };
    Frame frame() const;
    /// Elements to a unit of the projection.
    double scale() const;
    /// Metres on the ground that an element covers in the middle.
    double metersPerElement() const;
};

/// A picture of how far each place is from the next coast and border, from which lines and areas can be drawn
/// sharp at any size: two bytes an element, rows from the south up.
///
/// - the first: 128 at the coast; 255 on land `kReach` elements from it or farther; at sea 64 so far from it,
///   and 0 at `kFarReach` elements or farther;
/// - the second: 0 on a border, 255 at `kReach` elements from it or farther.
struct MapField {
    static constexpr double kReach = 4.0;
    static constexpr double kFarReach = 36.0;
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bytes;
};

/// Of a part of the earth.
MapField drawField(const MapRegion& region);
/// Of all the earth, plate carrée, 180° West at the left edge, the south pole below.
MapField drawWorldField(int width, int height);

}  // namespace sandbox
