
#include <GeographicLib/Geodesic.hpp>
#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "sandbox/scenario/Scenario.h"

namespace sandbox {

using halCore::kRadiansPerDegree;
namespace {

using PIData::PIDataPoint;

PIDataPoint point(double seconds, double latitude, double longitude, double speed = 0.0,
                  double heading = 0.0) {
    PIDataPoint result;
    result.timeSeconds = seconds;
    result.latRad = latitude * kRadiansPerDegree;
    result.lonRad = longitude * kRadiansPerDegree;
    result.speedMetersPerSecond = speed;
    result.headingRad = heading * kRadiansPerDegree;
    return result;
}

TEST(Track, GoesAlongTheGeodesicAcrossTheDateLine) {
    PIDataPoint from = point(100.0, 10.0, 179.0, 50.0, 350.0);
    PIDataPoint to = point(300.0, 12.0, -178.0, 70.0, 20.0);
    to.altMeters = 1000.0;
    const Track track({to, from});
    const auto middle = track.at(150.0);
    ASSERT_TRUE(middle);
    double fromStart = 0.0, whole = 0.0, toEnd = 0.0;
    const auto& earth = GeographicLib::Geodesic::WGS84();
    earth.Inverse(10.0, 179.0, 12.0, -178.0, whole);
    earth.Inverse(10.0, 179.0, middle->latRad / kRadiansPerDegree, middle->lonRad / kRadiansPerDegree,
                  fromStart);
    earth.Inverse(middle->latRad / kRadiansPerDegree, middle->lonRad / kRadiansPerDegree, 12.0, -178.0,
                  toEnd);
    EXPECT_NEAR(fromStart, whole / 4.0, 1e-3);
    EXPECT_NEAR(toEnd, whole * 3.0 / 4.0, 1e-3);
    EXPECT_NEAR(middle->altMeters, 250.0, 1e-9);
    EXPECT_NEAR(middle->headingRad / kRadiansPerDegree, 357.5, 1e-9);
    EXPECT_NEAR(middle->speedMetersPerSecond, 55.0, 1e-9);
    EXPECT_EQ(middle->timeSeconds, 150.0);
}

TEST(Track, IsNowhereBeforeItsBeginAndGoesOnAfterItsEnd) {
    const Track track({point(0.0, 0.0, 0.0, 10.0, 90.0), point(10.0, 0.0, 0.001, 20.0, 90.0)});
    EXPECT_FALSE(track.at(-0.1));
    double latitude = 0.0, longitude = 0.0;
    GeographicLib::Geodesic::WGS84().Direct(0.0, 0.001, 90.0, 200.0, latitude, longitude);
    EXPECT_NEAR(track.at(20.0)->lonRad / kRadiansPerDegree, longitude, 1e-12);
    EXPECT_EQ(Track(point(50.0, 1.0, 2.0)).at(-1e9)->lonRad, 2.0 * kRadiansPerDegree);
    const Track jump(
        {point(0.0, 0.0, 0.0), point(5.0, 0.0, 1.0), point(5.0, 0.0, 2.0), point(9.0, 0.0, 2.0)});
    EXPECT_NEAR(jump.at(5.0)->lonRad / kRadiansPerDegree, 2.0, 1e-12);
    EXPECT_NEAR(jump.at(4.999999)->lonRad / kRadiansPerDegree, 1.0, 1e-3);
}

TEST(Scenario, KeepsPlatformsOfAFileThatIsLoadedAgain) {
    Scenario scenario;
    const auto file = [](double begin, double end) {
        return std::deque<PlatformFile::Platform>{
            {"A", "", "", Track({point(begin, 0.0, 0.0), point(end, 0.0, 1.0)})}};
    };
    std::vector<std::uint64_t> added, moved;
    QObject::connect(&scenario, &Scenario::platformAdded, [&](std::uint64_t id) { added.push_back(id); });
    QObject::connect(&scenario, &Scenario::platformMoved, [&](std::uint64_t id) { moved.push_back(id); });
    scenario.load("a.csv", file(100.0, 200.0));
    ASSERT_EQ(added.size(), 1U);
    EXPECT_EQ(scenario.time(), 100.0);
    scenario.setTime(150.0);
    moved.clear();
    scenario.load("a.csv", file(120.0, 300.0));
    EXPECT_EQ(added.size(), 1U);
    EXPECT_EQ(moved, added);
    EXPECT_EQ(scenario.time(), 150.0);
    EXPECT_EQ(scenario.endTime(), 300.0);
    scenario.load("b.csv", file(0.0, 50.0));
    EXPECT_EQ(scenario.platforms().size(), 2U);
    EXPECT_EQ(scenario.beginTime(), 0.0);
    scenario.remove(added.back());
    EXPECT_EQ(scenario.endTime(), 300.0);
    scenario.clear(PIApplicationEvents_t::ScenarioCleared);
    EXPECT_EQ(scenario.endTime(), 0.0);
}

}  // namespace
}  // namespace sandbox
