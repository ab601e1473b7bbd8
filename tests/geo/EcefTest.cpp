#include <GeographicLib/Geocentric.hpp>
#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "geo/Ecef.h"

namespace halCore {
namespace {

TEST(Ecef, AgreesWithGeographicLib) {
    const double places[][3] = {{0, 0, 0}, {21.3, -158, 12}, {90, 0, 0}, {-90, 77, 100}, {-45, 180, 3e7}};
    for (const auto& [lat, lon, alt] : places) {
        Ecef expected;
        GeographicLib::Geocentric::WGS84().Forward(lat, lon, alt, expected.x, expected.y, expected.z);
        const Vec3 lla(lat * kRadiansPerDegree, lon * kRadiansPerDegree, alt);
        EXPECT_LT(length(toEcef(lla) - expected), 1e-8);
        EXPECT_LT(length(toEcef(toGeodetic(toEcef(lla))) - expected), 1e-7);
    }
}

}  // namespace
}  // namespace halCore
