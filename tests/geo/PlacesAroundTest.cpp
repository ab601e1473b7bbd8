#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "geo/GeodesicPath.h"
#include "geo/PlacesAround.h"

namespace halCore {
namespace {

// geodesicFrom is GeographicLib's.
TEST(PlacesAround, AreWhereGeodesicsEnd) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> any(-1.0, 1.0);
    for (int round = 0; round < 20000; ++round) {
        // Poles and the equator, the neighbourhood of both, and what lies between.
        const double wide[] = {0.0, 1e-9, 1e-3, 1.0};
        const double near = wide[random() % 4] * kHalfPi * any(random);
        const double lat = round % 3 == 0 ? near : std::copysign(kHalfPi - std::abs(near), near);
        const Vec3 center(lat, kPi * any(random) * 1.5, 40.0);
        const double azimuth = round % 5 == 0 ? double(random() % 4) * kHalfPi : kPi * any(random);
        const double meters = std::pow(PlacesAround::kFarthest, std::abs(any(random)) * 1.2 - 0.2);
        const double reached = std::min(meters, PlacesAround::kFarthest);
        const PlacesAround around(center);
        const Vec3 is = around.at(std::sin(azimuth), std::cos(azimuth), reached);
        const Ecef truth = toEcef(geodesicFrom(center, azimuth, reached));
        const Ecef place = around.placeAt(std::sin(azimuth), std::cos(azimuth), reached);
        const double off = std::max(length(toEcef(is) - truth), length(place - truth));
        ASSERT_LT(off, reached < 20'000.0 ? 1e-8 : 2e-7) << center.lat() << ' ' << azimuth << ' ' << reached;
        ASSERT_TRUE(is.lon() <= kPi && is.lon() > -kPi && is.alt() == 40.0);
    }
}

}  // namespace
}  // namespace halCore
