#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "geo/Ecef.h"
#include "globe/Flight.h"
#include "globe/Graticule.h"
#include "globe/ScaleBar.h"
#include "globe/ShapeText.h"
#include "globe/map/MapField.h"

namespace sandbox {
namespace {

constexpr double kMilliSeconds = 3600000.0;  // a degree

/// Of a place in the field of a part of the earth: whether it is land, and how many elements lie between it
/// and the coast (no more than the field reaches).
struct Ground {
    bool land = false;
    double toCoast = 0.0;
};
Ground groundAt(const MapRegion& region, const MapField& field, double latDegrees, double lonDegrees) {
    const MapRegion::Frame frame = region.frame();
    const halCore::Ecef u = halCore::toUnitSphere(
        halCore::toEcef({latDegrees * kRadiansPerDegree, lonDegrees * kRadiansPerDegree, 0.0}));
    const halCore::Ecef d = u - frame.middle;
    const double grown = region.scale() / std::sqrt(1.0 - dot(d, d) / 4.0);
    const auto x = static_cast<int>(region.size / 2.0 + dot(d, frame.east) * grown);
    const auto y = static_cast<int>(region.size / 2.0 + dot(d, frame.north) * grown);
    const int value = field.bytes[2 * static_cast<std::size_t>(y * field.width + x)];
    return {value > 127, std::abs(value - 127.5) / (value > 127 ? 127.5 : 63.5) * MapField::kReach};
}
Ground groundAt(const MapRegion& region, double latDegrees, double lonDegrees) {
    return groundAt(region, drawField(region), latDegrees, lonDegrees);
}

/// Land and sea where everybody knows them, near poles and 180 degrees, in parts of the earth of any size
/// that have the place anywhere in them; and the field of all the earth says the same.
TEST(BaseMap, KnowsLandFromSea) {
    const struct {
        double lat, lon;
        bool land;
    } places[] = {{21.5, -158.0, true}, {21.0, -158.5, false}, {48.9, 2.4, true},     {36.0, 18.0, false},
                  {-90.0, 0.0, true},   {90.0, 0.0, false},    {-80.0, 179.9, false}, {-85.0, -179.9, true},
                  {68.0, 179.99, true}, {68.0, -179.99, true}, {0.0, -160.0, false},  {-17.8, 178.0, true},
                  {64.0, -19.0, true},  {0.0, 25.0, true},     {40.0, -100.0, true},  {-25.0, 135.0, true}};
    const MapField world = drawWorldField(2048, 1024);
    for (const auto& place : places) {
        const auto row = std::clamp(static_cast<int>((place.lat + 90.0) / 180.0 * 1024), 0, 1023);
        const auto column = static_cast<int>((place.lon + 180.0) / 360.0 * 2048);
        EXPECT_EQ(world.bytes[2 * static_cast<std::size_t>(row * 2048 + column)] > 127, place.land)
            << place.lat << ' ' << place.lon;
        double bearing = place.lat + place.lon;
        for (const double radius : {1.02, 0.7, 0.2, 0.02, 2e-3, 1e-4}) {
            bearing += 2.4;
            const double away = 0.8 * radius / kRadiansPerDegree;
            const double lat = std::clamp(place.lat + away * std::cos(bearing), -90.0, 90.0);
            const double lon = place.lon + away * std::sin(bearing) * std::cos(place.lat * kRadiansPerDegree);
            const MapRegion region{lat * kRadiansPerDegree, lon * kRadiansPerDegree, radius,
                                   radius > 0.1 ? 1000 : 200};
            EXPECT_EQ(groundAt(region, place.lat, place.lon).land, place.land)
                << place.lat << ' ' << place.lon << " in " << radius << " about " << lat << ' ' << lon;
        }
    }
}

/// The coast stays where it is when one comes closer, to what the source is good for.
TEST(BaseMap, CoastsStayInPlace) {
    for (double lat = 20.6; lat < 21.0; lat += 0.013) {
        const MapRegion wide{0.36, -2.73, 0.02, 512};
        const MapRegion close{lat * kRadiansPerDegree, -156.4 * kRadiansPerDegree, 5e-4, 512};
        const Ground far = groundAt(wide, lat, -156.4);
        const Ground near = groundAt(close, lat, -156.4);
        EXPECT_TRUE(near.land == far.land || far.toCoast * wide.metersPerElement() < 700.0) << lat;
    }
}

TEST(Graticule, NamesItsLines) {
    const auto name = [](double degrees, bool latitude, double spacing) {
        return ' ' + graticuleText(std::llround(degrees * kMilliSeconds), latitude,
                                   std::llround(spacing * kMilliSeconds));
    };
    EXPECT_EQ(name(20, true, 10) + name(-20, true, 10) + name(0, true, 10) + name(0, false, 10),
              " 20°N 20°S 0° 0°");
    EXPECT_EQ(name(180, false, 10) + name(-180, false, 10) + name(190, false, 10), " 180° 180° 170°W");
    EXPECT_EQ(name(-200, false, 10) + name(545, false, 1) + name(21.5, true, 0.5), " 160°E 175°W 21°30'N");
    EXPECT_EQ(name(-0.05, true, 0.05) + name(158 + 1 / 3600.0, false, 1 / 3600.0), " 0°03'S 158°00'01\"E");
    EXPECT_EQ(name(-7 - 0.2 / 3600, false, 0.2 / 3600), " 7°00'00.2\"W");
}

void expectSuits(const Camera& camera) {
    const GraticuleGrid grid = graticuleGrid(camera);
    const auto lines = graticuleLines(grid);
    EXPECT_TRUE(lines.size() >= 4 && lines.size() <= 260) << lines.size();
    for (const auto& line : lines) EXPECT_LE(line.points.size(), 300U);
    // As a multiple of the spacing between lines.
    const auto inLines = [&](double radians, bool latitude) {
        const std::int64_t spacing = latitude ? grid.latSpacing : grid.lonSpacing;
        return radians / kRadiansPerDegree * kMilliSeconds / static_cast<double>(spacing);
    };
    EXPECT_GE(1.0 / inLines(camera.metersPerPixel() / halCore::wgs84::a, true),
              std::min(89.0, 2e6 / camera.metersPerPixel()));
    const auto isWithin = [](double line, std::int64_t low, std::int64_t high) {
        return line > static_cast<double>(low) - 1e-6 && line < static_cast<double>(high) + 1e-6;
    };
    for (const double x : {0.0, 500.0, 1000.0})
        for (const double y : {0.0, 600.0})
            if (const auto edge = camera.pick(x, y)) {
                EXPECT_TRUE(isWithin(inLines(edge->lat(), true), grid.south, grid.north));
                int turns = 0;
                for (const double turn : {-halCore::kTwoPi, 0.0, halCore::kTwoPi})
                    turns += isWithin(inLines(edge->lon() + turn, false), grid.west, grid.east) ? 1 : 0;
                EXPECT_GE(turns, 1);
            }
    const auto labels = graticuleLabels(grid, camera);
    for (const auto& label : labels) {
        // The equator and the first meridian are called the same.
        EXPECT_LE(std::ranges::count(labels, label.text, &GraticuleLabel::text),
                  label.text.starts_with("0°") ? 2 : 1)
            << label.text;
        EXPECT_TRUE(label.x >= 0 && label.x <= 1000 && label.y >= 0 && label.y <= 600);
        const auto isNear = [&](const GraticuleLabel& other) {
            return std::abs(other.x - label.x) < 60 && std::abs(other.y - label.y) < 15;
        };
        EXPECT_EQ(std::ranges::count_if(labels, isNear), 1) << label.text;
        // Towards the horizon and at the poles lines are close.
        if (camera.elevation() < 1.5 || std::abs(camera.center().lat()) > 1.5) continue;
        const halCore::Vec3 place = camera.pick(label.x, label.y).value_or(halCore::Vec3(9, 9, 9));
        const auto isOn = [&](double line, bool latitude, std::int64_t spacing) {
            return std::abs(line - std::round(line)) < 0.1 &&
                   label.text == graticuleText(std::llround(line) * spacing, latitude, spacing);
        };
        EXPECT_TRUE(isOn(inLines(place.lat(), true), true, grid.latSpacing) ||
                    isOn(inLines(place.lon(), false), false, grid.lonSpacing))
            << label.text;
    }
}

/// Everywhere, from everywhere: not too many lines, not too few, all over the view, each named at most once,
/// and as far apart as names need to be.
TEST(Graticule, SuitsEveryView) {
    for (const double lat : {0.0, 45.0, -89.99, 90.0})
        for (const double lon : {0.0, 179.999, -180.0})
            for (double range = 50.0; range < 3.0e8; range *= 7.0)
                for (const double elevation : {90.0, 20.0}) {
                    SCOPED_TRACE(testing::Message() << lat << ' ' << lon << ' ' << range << ' ' << elevation);
                    expectSuits(looking(at(lat, lon), range, 30.0, elevation));
                }
}

TEST(ScaleBar, IsAsLongAsItSays) {
    const struct {
        double lat, range;
        const char* text;
    } cases[] = {{0, 20.0, "5 m"}, {21.3, 4.0e3, "1 km"}, {-60, 1.2e6, "200 km"}, {90, 8.0e4, "20 km"}};
    for (const auto& c : cases) {
        const Camera camera = looking(at(c.lat, 100), c.range, 70.0);
        const ScaleBar bar = scaleBar(camera, 160.0);
        EXPECT_EQ(bar.text, c.text);
        EXPECT_TRUE(bar.pixels <= 160.0 && bar.pixels > 63.0) << bar.pixels;
        const auto left = *camera.pick(500 - bar.pixels / 2, 300);
        const auto right = *camera.pick(500 + bar.pixels / 2, 300);
        EXPECT_NEAR(length(toEcef(left) - toEcef(right)) / bar.meters, 1.0, 2e-3) << c.text;
    }
    EXPECT_EQ(scaleBar(looking(at(0, 0), 2.0e8), 160.0).text, "50000 km");
}

TEST(Flight, GoesTheShortWayAndArrives) {
    const Camera from = looking(at(10, 170), 1.0e4, 350);
    const Camera to = looking(at(-10, -170), 2.0e4, 20, 40);
    const Flight flight(from, to);
    EXPECT_LT(length(flight.at(0.0).eye() - from.eye()), 1e-3);
    EXPECT_TRUE(flight.at(1.0) == to && flight.at(7.0) == to);
    const Camera half = flight.at(0.5);
    EXPECT_LT(length(toEcef(half.center()) - toEcef(at(0, 180))), 0.01);
    EXPECT_NEAR(half.azimuth() / kRadiansPerDegree, 5.0, 1e-9);
    EXPECT_GT(half.range(), 1.0e6) << "high enough to see where it goes";
    for (double t = 0.0; t < 1.0; t += 0.05) {
        const double range = flight.at(t).range();
        EXPECT_TRUE(range < 5.0e6 && range >= 1.0e4 * (1 - 1e-12)) << range;
    }
}

}  // namespace
}  // namespace sandbox
