#include "gdal/Track.h"

#include <cmath>

#include "geo/Angles.h"

namespace exchange {

double degreesOf(double radians) {
    constexpr double kScale = 1e13;
    const double raw = radians * halCore::kDegreesPerRadian;
    // Adding and taking away what leaves no bits for a fraction rounds.
    constexpr double kNoFraction = 0x1.8p52;
    const double round = (raw * kScale + kNoFraction - kNoFraction) / kScale;
    return std::abs(round - raw) <= 8e-16 * std::abs(raw) ? round : raw;
}

Track toTrack(const halCore::GeodeticPath& path) {
    Track track;
    // A ring will be closed.
    for (std::vector<double>* values : {&track.lon, &track.lat, &track.alt}) values->reserve(path.size() + 1);
    for (const halCore::Vec3& place : path) {
        track.lon.push_back(degreesOf(place.lon()));
        track.lat.push_back(degreesOf(place.lat()));
        track.alt.push_back(place.alt());
    }
    return track;
}

}  // namespace exchange
