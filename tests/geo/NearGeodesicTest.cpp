#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "geo/GeodesicPath.h"
#include "geo/NearGeodesic.h"

namespace halCore {
namespace {

// geodesicBetween and geodesicFrom are GeographicLib's.
TEST(NearGeodesic, IsAsNearAsItSays) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> any(-1.0, 1.0);
    for (int round = 0; round < 5000; ++round) {
        const double altitude = round % 2 == 0 ? 0.0 : 20'000.0 * any(random);
        const double lat = round % 7 == 0 ? std::copysign(kHalfPi, any(random)) : kHalfPi * any(random);
        const Vec3 from(lat, kPi * any(random), altitude);
        const double azimuth = round % 5 == 0 ? double(random() % 4) * kHalfPi : kPi * any(random);
        const double meters = std::pow(NearGeodesic::kFarthest, 0.5 + 0.5 * std::abs(any(random)));
        const Vec3 to = geodesicFrom(from, azimuth, meters);
        NearGeodesic way(from, toEcef(from), to, toEcef(to));
        EXPECT_NEAR(way.meters(), meters, 1e-5 * meters);
        constexpr int kPieces = 12;
        way.start(0.0, 1.0 / kPieces);
        for (int i = 0; i <= kPieces; ++i, way.next()) {
            const Vec3 point = way.point();
            ASSERT_LT(length(toEcef(point) - way.place()), 1e-6);
            ASSERT_EQ(point.alt(), altitude);
            const double gone = geodesicBetween(from, point).meters;
            EXPECT_NEAR(gone, meters * i / kPieces, meters / 2000.0);
            const double off = length(toEcef(geodesicFrom(from, azimuth, gone)) - way.place());
            ASSERT_LT(off, 0.4e-12 * meters * meters + 1e-7)
                << from.lat() << ' ' << azimuth << ' ' << meters << ' ' << i;
        }
    }
}

}  // namespace
}  // namespace halCore
