#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace sandbox {

/// Geodetic, radians. Along a path longitudes run on beyond 180 degrees instead of jumping.
struct MapPoint {
    float lat = 0.0F;
    float lon = 0.0F;
};

/// A stretch of points of a `MapLevel`.
struct MapPath {
    enum class Kind : std::uint8_t {
        Land,           ///< a coast, closed, the land on one side; the first point is not repeated
        Border,         ///< between two countries, open
        LandAroundPole  ///< a coast that runs once around the south pole, open
    };
    Kind kind = Kind::Land;
    std::size_t first = 0;
    std::size_t count = 0;
};

/// The coasts and borders of the earth, as fine as a scale wants them.
struct MapLevel {
    /// Points of a path that follow each other and share a box (the last part of a path may be shorter).
    static constexpr std::size_t kPart = 64;
    struct Box {
        float south, north, west, east;
    };

    std::vector<MapPoint> points;
    std::vector<MapPath> paths;
    std::vector<Box> boxes;  ///< of the parts, path by path
};

struct MapName {
    std::string text;  ///< UTF-8
    double lat = 0.0;  ///< where it has room, radians
    double lon = 0.0;
    double roomMeters = 0.0;  ///< half the height of the free strip there, which is twice as wide as high
};

/// The base map, Natural Earth 1:10 million, part of the program. Each level of detail is read when it is
/// first asked for. map/make-map makes the file:
///
///     8 bytes "OEMAP1"; 4 doubles: degrees a step of longitude and latitude, degrees at step 0 of both
///     4 sections: length, packed length (32 bits each), zlib data. Three levels, then the names
///     a level: 1 byte, the step of its grid; then its paths: number of points, kind, points.
///              All numbers have 7 bits a byte, low bits first; a point is the difference to the point
///              before, longitude first, signs folded in (0, -1, 1, -2 ...)
///     the names: text, latitude, longitude in degrees, room in km; tab, line by line, the largest first
///
/// Everything is little-endian.
class MapData {
  public:
    static constexpr std::size_t kLevels = 3;
    /// What each level may be off, metres, the coarsest first; the finest is as good as the source.
    static constexpr double kTolerances[kLevels] = {6000.0, 1500.0, 300.0};

    static const MapLevel& level(std::size_t index);
    static const std::vector<MapName>& names();
    /// The coarsest level that is right to so many metres, or else the finest.
    static const MapLevel& levelFor(double meters);
};

}  // namespace sandbox
