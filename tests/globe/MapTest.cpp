#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <GeographicLib/Geodesic.hpp>
#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "globe/Camera.h"
#include "globe/Flight.h"
#include "globe/Graticule.h"
#include "globe/ScaleBar.h"

namespace sandbox {

using halCore::kRadiansPerDegree;
namespace {

constexpr std::int64_t kMilliSeconds = 3600000;  // a degree

Camera looking(double lat, double lon, double range, double azimuth = 0.0, double elevation = 90.0) {
    Camera camera;
    camera.setViewport(1000, 800);
    camera.setCenter({lat * kRadiansPerDegree, lon * kRadiansPerDegree, 0.0});
    camera.setRangeAzimuthElevation(range, azimuth * kRadiansPerDegree, elevation * kRadiansPerDegree);
    return camera;
}

TEST(Graticule, NamesItsLines) {
    const struct {
        double degrees;
        bool latitude;
        std::int64_t spacing;
        const char* text;
    } cases[] = {{20, true, 10 * kMilliSeconds, "20°N"},
                 {-20, true, 10 * kMilliSeconds, "20°S"},
                 {0, true, 10 * kMilliSeconds, "0°"},
                 {0, false, 10 * kMilliSeconds, "0°"},
                 {180, false, 10 * kMilliSeconds, "180°"},
                 {-180, false, 10 * kMilliSeconds, "180°"},
                 {190, false, 10 * kMilliSeconds, "170°W"},
                 {-200, false, 10 * kMilliSeconds, "160°E"},
                 {545, false, kMilliSeconds, "175°W"},
                 {21.5, true, kMilliSeconds / 2, "21°30'N"},
                 {-0.05, true, kMilliSeconds / 20, "0°03'S"},
                 {158 + 1.0 / 3600, false, 1000, "158°00'01\"E"},
                 {-(7 + 0.2 / 3600), false, 200, "7°00'00.2\"W"}};
    for (const auto& c : cases)
        EXPECT_EQ(graticuleText(std::llround(c.degrees * kMilliSeconds), c.latitude, c.spacing), c.text);
}

/// Everywhere, from everywhere: not too many lines, not too few, each named at most once, and as far apart as
/// names need to be.
TEST(Graticule, SuitsEveryView) {
    for (const double lat : {0.0, 45.0, -89.99, 90.0})
        for (const double lon : {0.0, 179.999, -180.0})
            for (double range = 50.0; range < 3.0e8; range *= 7.0)
                for (const double elevation : {90.0, 20.0}) {
                    SCOPED_TRACE(testing::Message() << lat << ' ' << lon << ' ' << range << ' ' << elevation);
                    const Camera camera = looking(lat, lon, range, 30.0, elevation);
                    const GraticuleGrid grid = graticuleGrid(camera);
                    EXPECT_EQ(grid, graticuleGrid(camera));
                    const auto lines = graticuleLines(grid);
                    EXPECT_GE(lines.size(), 4U);
                    EXPECT_LE(lines.size(), 260U);
                    for (const auto& line : lines) EXPECT_LE(line.points.size(), 300U);
                    const auto labels = graticuleLabels(grid, camera);
                    for (const auto& label : labels) {
                        // The equator and the first meridian are called the same.
                        EXPECT_LE(std::ranges::count(labels, label.text, &GraticuleLabel::text),
                                  label.text.starts_with("0°") ? 2 : 1)
                            << label.text;
                        EXPECT_TRUE(label.x >= 0 && label.x <= 1000 && label.y >= 0 && label.y <= 800);
                    }
                }
}

TEST(Graticule, NamesStandOnTheirLines) {
    const Camera camera = looking(21.3, -157.9, 2.0e5);
    const GraticuleGrid grid = graticuleGrid(camera);
    EXPECT_EQ(grid.latSpacing, 10 * 60 * 1000);  // 90 pixels are 13.9 km = 7.5'
    const auto labels = graticuleLabels(grid, camera);
    const auto found = std::ranges::find(labels, "21°20'N", &GraticuleLabel::text);
    ASSERT_NE(found, labels.end());
    EXPECT_NEAR(camera.pick(found->x, found->y)->lat() / kRadiansPerDegree, 21.0 + 20.0 / 60, 1e-4);
    const auto meridian = std::ranges::find(labels, "158°00'W", &GraticuleLabel::text);
    ASSERT_NE(meridian, labels.end());
    EXPECT_NEAR(camera.pick(meridian->x, meridian->y)->lon() / kRadiansPerDegree, -158.0, 1e-4);
}

TEST(ScaleBar, IsAsLongAsItSays) {
    const struct {
        double lat, range;
        const char* text;
    } cases[] = {{0, 50, "5 m"}, {21.3, 1.0e4, "1 km"}, {-60, 3.0e6, "200 km"}, {90, 2.0e5, "20 km"}};
    for (const auto& c : cases) {
        const Camera camera = looking(c.lat, 100, c.range, 70.0);
        const ScaleBar bar = scaleBar(camera, 160.0);
        EXPECT_EQ(bar.text, c.text);
        EXPECT_LE(bar.pixels, 160.0);
        EXPECT_GT(bar.pixels, 63.0);
        const auto left = *camera.pick(500 - bar.pixels / 2, 400);
        const auto right = *camera.pick(500 + bar.pixels / 2, 400);
        double meters = 0.0;
        GeographicLib::Geodesic::WGS84().Inverse(
            left.lat() / kRadiansPerDegree, left.lon() / kRadiansPerDegree, right.lat() / kRadiansPerDegree,
            right.lon() / kRadiansPerDegree, meters);
        EXPECT_NEAR(meters / bar.meters, 1.0, 2e-3) << c.text;
    }
    EXPECT_EQ(scaleBar(looking(0, 0, 2.0e8), 160.0).text, "20000 km");
}

TEST(Flight, GoesTheShortWayAndArrives) {
    const Camera from = looking(10, 170, 1.0e4, 350);
    const Camera to = looking(-10, -170, 2.0e4, 20, 40);
    const Flight flight(from, to);
    EXPECT_LT(length(flight.at(0.0).eye() - from.eye()), 1e-3);
    EXPECT_EQ(flight.at(1.0), to);
    EXPECT_EQ(flight.at(7.0), to);
    const Camera half = flight.at(0.5);
    EXPECT_NEAR(half.center().lat(), 0.0, 1e-9);
    EXPECT_NEAR(std::abs(half.center().lon()) / kRadiansPerDegree, 180.0, 1e-9);
    EXPECT_NEAR(std::remainder(half.azimuth() / kRadiansPerDegree - 5.0, 360.0), 0.0, 1e-9);
    // High enough to see where it goes.
    EXPECT_GT(half.range(), 1.0e6);
    for (double t = 0.0; t < 1.0; t += 0.05) {
        const Camera here = flight.at(t);
        EXPECT_TRUE(here.range() < 5.0e6 && here.range() >= 1.0e4 * (1 - 1e-12));
    }
}

}  // namespace
}  // namespace sandbox
