#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <GeographicLib/Geodesic.hpp>
#include <gmock/gmock.h>

#include "geo/Angles.h"
#include "sandbox/scenario/PlatformFile.h"

namespace sandbox {

using halCore::kRadiansPerDegree;
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double kDay = 86400.0;

/// Row by row, as a large file is read.
PlatformFile read(std::string_view text) {
    PlatformFileReading reading(text, 2026);
    while (!reading.goOn(1)) continue;
    return reading.take();
}

TEST(PlatformFile, ReadsColumnsInAnyOrderAndTimesOfEveryForm) {
    const PlatformFile file = read(
        "\xEF\xBB\xBFName, LAT, lon, time, speed, alt, heading, icon, remark, overlay\r\n"
        "# a comment\r\n"
        "\r\n"
        "\"Ferry, \"\"Kauai\"\"\",21.5,-158,2026-01-02T06:00:00Z,9.5,12,-90,x2,anything,rings.zel\r\n"
        "\"Ferry, \"\"Kauai\"\"\",21.5,-159,2026-01-02T08:00:00+01:00,,,,\r\n"
        "Buoy,-3,200,1.5");
    EXPECT_THAT(file.messages, IsEmpty());
    ASSERT_THAT(file.platforms, SizeIs(2));
    const auto& ferry = file.platforms[0];
    EXPECT_EQ(ferry.name, "Ferry, \"Kauai\"");
    EXPECT_EQ(ferry.icon.text(), "x2");
    EXPECT_EQ(ferry.overlay.text(), "rings.zel");
    ASSERT_EQ(ferry.track.size(), 2U);
    EXPECT_DOUBLE_EQ(ferry.track.beginTime(), kDay + 6 * 3600.0);
    EXPECT_DOUBLE_EQ(ferry.track.endTime(), kDay + 7 * 3600.0);
    const auto start = ferry.track.point(0);
    EXPECT_DOUBLE_EQ(start.latRad, 21.5 * kRadiansPerDegree);
    EXPECT_DOUBLE_EQ(start.altMeters, 12.0);
    EXPECT_DOUBLE_EQ(start.headingRad, -90.0 * kRadiansPerDegree);
    EXPECT_DOUBLE_EQ(start.speedMetersPerSecond, 9.5);
    EXPECT_DOUBLE_EQ(file.platforms[1].track.point(0).lonRad, 200.0 * kRadiansPerDegree);
    EXPECT_DOUBLE_EQ(file.platforms[1].track.beginTime(), 1.5);
}

/// However the rows of platforms are mixed, each platform has its own, in the order of their times, and those
/// of one time as they stand in the file. A column may say something in a few of them.
TEST(PlatformFile, SortsRows) {
    std::mt19937 random(3);
    std::map<std::string, std::vector<std::array<int, 3>>> expected;
    std::string text = "time,name,lat,lon,alt,icon\n";
    for (int row = 0; row < 2000; ++row) {
        const std::string name = "P" + std::to_string(random() % 60);
        const int time = static_cast<int>(random() % 50), alt = row < 1000 ? 7 : row;
        text += std::to_string(time) + "," + name + "," + std::to_string(row * 0.01) + ",1," +
                std::to_string(alt) + ",of " + name + "\n";
        expected[name].push_back({time, row, alt});
    }
    const PlatformFile file = read(text);
    ASSERT_EQ(file.platforms.size(), expected.size());
    for (const PlatformFile::Platform& platform : file.platforms) {
        auto& rows = expected[platform.name];
        std::ranges::stable_sort(rows, {}, [](const auto& row) { return row[0]; });
        EXPECT_EQ(platform.icon.text(), "of " + platform.name);
        ASSERT_EQ(platform.track.size(), rows.size());
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const auto point = platform.track.point(i);
            ASSERT_EQ(point.timeSeconds, rows[i][0]);
            ASSERT_NEAR(point.latRad / kRadiansPerDegree, rows[i][1] * 0.01, 1e-9);
            ASSERT_EQ(point.altMeters, rows[i][2]);
            ASSERT_TRUE(std::isnan(point.headingRad));
        }
    }
}

TEST(PlatformFile, NamesEveryBadRowAndKeepsTheGood) {
    const PlatformFile file = read(
        "time,name,lat,lon,heading\n"
        "noon,A,1,2,\n"
        "0,A,91,2,\n"
        "0,A,1,east,\n"
        "0,,1,2,\n"
        "0,A,1,2,,7\n"
        "0,\"A,1,2\n"
        "0,A,,2,\n"
        "0,A,nan,2,\n"
        "0,A,1,2,\n");
    std::vector<std::string> messages;
    for (const auto& message : file.messages)
        messages.push_back(std::to_string(message.line) + ": " + message.text);
    EXPECT_THAT(messages, ElementsAre("2: time: expected ISO 8601 or seconds, found \"noon\"",
                                      "3: latitude: expected a number between -90 and 90, found \"91\"",
                                      "4: longitude: expected a number between -180 and 360, found \"east\"",
                                      "5: no name", "6: 6 fields for 5 columns", "7: a quote is not closed",
                                      "8: latitude: expected a number between -90 and 90, found \"\"",
                                      HasSubstr("9: latitude: ")));
    ASSERT_THAT(file.platforms, SizeIs(1));
    EXPECT_EQ(file.platforms[0].track.size(), 1U);
}

TEST(PlatformFile, NeedsTheNamesOfItsColumns) {
    for (const std::string_view text :
         {"time,name,lat\n0,A,1\n", "0,A,1,2\n0,A,1,2\n", "time,time,lat,lon,name\n"}) {
        const PlatformFile file = read(text);
        EXPECT_THAT(file.messages, SizeIs(1)) << text;
        EXPECT_THAT(file.platforms, IsEmpty()) << text;
    }
    EXPECT_THAT(read("").messages, IsEmpty());
    EXPECT_THAT(read("time;name;lat;lon\n0;A;1;2\n").platforms, SizeIs(1));
    EXPECT_THAT(read(std::string("\0\1\2\377", 4)).messages, SizeIs(1));
}

TEST(PlatformFile, HeadingsAndSpeedsFollowFromThePlaces) {
    // An hour along the equator to the east, then half an hour to the north, given in the wrong order.
    const PlatformFile file = read(
        "time,name,lat,lon\n"
        "5400,A,1,1\n"
        "0,A,0,0\n"
        "3600,A,0,1\n");
    ASSERT_THAT(file.platforms, SizeIs(1));
    const Track& track = file.platforms[0].track;
    const auto expect = [&](double seconds, double heading, double speed) {
        const auto point = track.at(seconds);
        ASSERT_TRUE(point);
        EXPECT_NEAR(point->headingRad / kRadiansPerDegree, heading, 1e-9) << seconds;
        EXPECT_NEAR(point->speedMetersPerSecond, speed, 1e-9) << seconds;
    };
    double east = 0.0, north = 0.0;
    GeographicLib::Geodesic::WGS84().Inverse(0, 0, 0, 1, east);
    GeographicLib::Geodesic::WGS84().Inverse(0, 1, 1, 1, north);
    expect(0.0, 90.0, east / 3600.0);
    expect(3599.0, 90.0, east / 3600.0);
    expect(3600.0, 0.0, north / 1800.0);
    expect(5400.0, 0.0, 0.0);
    expect(1e6, 0.0, 0.0);
    EXPECT_EQ(track.at(1e6)->latRad, 1.0 * kRadiansPerDegree);
}

}  // namespace
}  // namespace sandbox
