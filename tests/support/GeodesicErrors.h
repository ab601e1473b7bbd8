#pragma once

#include <algorithm>
#include <cmath>
#include <random>

#include <GeographicLib/Geodesic.hpp>

#include "geo/Angles.h"
#include "geo/Sodano.h"

namespace halCore {

inline double angleBetween(double a, double b) {
    return std::abs(std::remainder(a - b, kTwoPi));
}

/// Worst errors against GeographicLib, in metres and radians.
struct GeodesicErrors {
    double inverse = 0.0;
    double direct = 0.0;
    /// Of the distance that the inverse measures to the point that the direct solution found.
    double roundTrip = 0.0;
    double azimuth = 0.0;
};

/// Over `count` starting points and directions at a distance in metres: the poles, the equator and its
/// neighbourhood, both sides of the date line, the cardinal directions, and the rest at random.
inline GeodesicErrors measureGeodesics(double distance, int count) {
    const auto& exact = GeographicLib::Geodesic::WGS84();
    std::mt19937_64 random(29);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    GeodesicErrors worst;
    for (int i = 0; i < count; ++i) {
        const double latitudes[] = {kHalfPi, -kHalfPi, 0.0, 1e-12, std::asin(2.0 * unit(random) - 1.0)};
        const double longitudes[] = {kPi, -kPi, kTwoPi * unit(random) - kPi};
        const double azimuths[] = {0.0, kHalfPi, kPi, kTwoPi * unit(random) - kPi};
        const double lat = latitudes[std::min(i % 9, 4)];
        const double lon = longitudes[std::min(i % 5, 2)];
        const double azimuth = azimuths[std::min(i % 7, 3)];

        const auto reached = Sodano::direct(lat, lon, azimuth, distance);
        double lat2, lon2, error;
        exact.Direct(lat * kDegreesPerRadian, lon * kDegreesPerRadian, azimuth * kDegreesPerRadian, distance,
                     lat2, lon2);
        exact.Inverse(lat2, lon2, reached.lat * kDegreesPerRadian, reached.lon * kDegreesPerRadian, error);
        worst.direct = std::max(worst.direct, error);

        const auto found = Sodano::inverse(lat, lon, reached.lat, reached.lon);
        double length, azimuth1, azimuth2;
        exact.Inverse(lat * kDegreesPerRadian, lon * kDegreesPerRadian, reached.lat * kDegreesPerRadian,
                      reached.lon * kDegreesPerRadian, length, azimuth1, azimuth2);
        worst.inverse = std::max(worst.inverse, std::abs(found.distance - length));
        worst.roundTrip = std::max(worst.roundTrip, std::abs(found.distance - distance));
        worst.azimuth = std::max(worst.azimuth, angleBetween(found.azimuth1, azimuth1 * kRadiansPerDegree));
        // At a pole the second azimuth turns with the last bit of the longitude.
        if (std::abs(reached.lat) < 1.57)
            worst.azimuth =
                std::max(worst.azimuth, angleBetween(found.azimuth2, azimuth2 * kRadiansPerDegree));
    }
    return worst;
}

}  // namespace halCore
