#include "gdal/Track.h"

#include <cmath>

#include "geo/Angles.h"

namespace exchange {

double degreesOf(double radians) {
    constexpr double kScale = 1e13;
    const double raw = radians * halCore::kDegreesPerRadian;
    const double round = std::nearbyint(raw * kScale) / kScale;
    return std::abs(round - raw) <= 8e-16 * std::abs(raw) ? round : raw;
}

Track toTrack(const halCore::GeodeticPath& path) {
    Track track;
    track.lon.resize(path.size());
    track.lat.resize(path.size());
    track.alt.resize(path.size());
    for (std::size_t i = 0; i < path.size(); ++i) {
        track.lon[i] = degreesOf(path[i].lon());
        track.lat[i] = degreesOf(path[i].lat());
        track.alt[i] = path[i].alt();
    }
    return track;
}

}  // namespace exchange
