#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

/// The same geometry as overlay text, as GeoJSON and as numbers.
namespace bench {

/// Longitude and latitude in degrees, altitude in feet.
struct Position {
    double lon;
    double lat;
    double alt;
};

/// A line of a million points, or a hundred thousand polygons of ten points with a name, a line width and two
/// colours.
struct Data {
    std::vector<std::vector<Position>> shapes;
    std::size_t points = 0;
    std::string zel;
    std::string geoJson;
};

/// Coordinates with 6 decimals, as most data have.
const Data& line();
/// Coordinates with 15 significant digits, as the editor writes a position that the mouse gave.
const Data& longNumbers();
const Data& smallShapes();

std::string shapeName(std::size_t index);

}  // namespace bench
