#pragma once

#include <cstddef>
#include <vector>

#include "geo/GeodesicPath.h"

namespace exchange {

/// Points as a GIS wants them: degrees, metres. A ring's last point is not its first.
struct Track {
    std::vector<double> lon;
    std::vector<double> lat;
    std::vector<double> alt;

    std::size_t size() const { return lon.size(); }
    void add(double longitude, double latitude, double altitude) {
        lon.push_back(longitude);
        lat.push_back(latitude);
        alt.push_back(altitude);
    }
    void add(const Track& other, std::size_t i) { add(other.lon[i], other.lat[i], other.alt[i]); }
};

/// The degrees that a file's text said before they became radians: the nearest number of 13 decimals, when
/// that is within the rounding of the two steps.
double degreesOf(double radians);

Track toTrack(const halCore::GeodeticPath& path);

}  // namespace exchange
