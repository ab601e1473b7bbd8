#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <GeographicLib/LocalCartesian.hpp>
#include <gtest/gtest.h>

#include "TestView.h"
#include "tools/OpenGlView.h"
#include "tools/PUDrawPoints.h"
#include "tools/PointPainter.h"
#include "tools/ViewProjection.h"

namespace {

using halCore::Vec3;
using OverlayEditor::Pixel;
using OverlayEditor::ViewProjection;

TEST(ViewProjection, PixelsAreExactAtEveryRange) {
    // The date line and the pole among them.
    for (const auto& [placeLat, placeLon] :
         {std::pair(21.0, -158.0), {-3.0, 180.0}, {89.9, 40.0}, {90.0, 0.0}})
        for (const double range : {100.0, 1e6, 2e7}) {
            SCOPED_TRACE(std::to_string(placeLat) + " from " + std::to_string(range));
            const TestView view(degrees(placeLat, placeLon, range));
            const auto projection = view.projection();
            const GeographicLib::LocalCartesian local(placeLat, placeLon, range);
            // Ground positions a tenth of the range away from the one beneath.
            for (const auto& [east, north] :
                 {std::pair(0.1, 0.0), std::pair(-0.03, 0.1), std::pair(0.0, 0.0)}) {
                double lat = 0.0, lon = 0.0, alt = 0.0;
                local.Reverse(east * range, north * range, -range, lat, lon, alt);
                double x = 0.0, y = 0.0, z = 0.0;
                local.Forward(lat, lon, alt, x, y, z);
                const auto pixel = projection.pixel(halCore::toEcef(degrees(lat, lon, alt)));
                ASSERT_TRUE(pixel);
                const double focalPixels = TestView::kFocal * TestView::kHeight / 2.0;
                EXPECT_NEAR(pixel->x, TestView::kWidth / 2.0 + focalPixels * x / -z, 1e-3);
                EXPECT_NEAR(pixel->y, TestView::kHeight / 2.0 - focalPixels * y / -z, 1e-3);
            }
            EXPECT_NEAR(projection.metersPerPixel(halCore::toEcef(degrees(placeLat, placeLon))),
                        range / (TestView::kFocal * TestView::kHeight / 2.0), range * 1e-9);
        }
}

TEST(ViewProjection, TheEarthHidesWhatLiesBehindTheHorizon) {
    constexpr double kRadius = 6378137.0;
    for (const double height : {10.0, 1e3, 1e6, 2e7}) {
        SCOPED_TRACE(height);
        const TestView view(degrees(0.0, 179.0, height));
        const auto projection = view.projection();
        // Along the equator the earth is a circle.
        const double horizon = std::acos(kRadius / (kRadius + height));
        const auto hidden = [&](double away, double alt) {
            return projection.isHiddenByEarth(halCore::toEcef(Vec3(0.0, 179.0 * kDegree + away, alt)));
        };
        for (const double side : {-1.0, 1.0}) {
            EXPECT_FALSE(hidden(side * horizon * 0.999, 0.0));
            EXPECT_TRUE(hidden(side * horizon * 1.001, 0.0));
            // As far again beyond the horizon a point as high as the eye just comes into sight.
            EXPECT_FALSE(hidden(side * horizon * 1.999, height));
            EXPECT_TRUE(hidden(side * horizon * 2.001, height));
        }
        EXPECT_TRUE(hidden(std::numbers::pi, 0.0));
        EXPECT_FALSE(hidden(0.0, height * 2.0)) << "behind the eye, not behind the earth";
    }
    const TestView view(degrees(10.0, 20.0, 1e5));
    EXPECT_TRUE(view.projection().visiblePixel(halCore::toEcef(degrees(10.0, 20.0, -300.0))))
        << "below the ground, in sight";
    EXPECT_FALSE(view.projection().visiblePixel(halCore::toEcef(degrees(-10.0, -160.0))));
    EXPECT_FALSE(view.projection().pixel(halCore::toEcef(degrees(10.0, 20.0, 2e5)))) << "behind the eye";
}

/// Whatever can be seen of a path is within half a pixel of what is told of it, and nothing else is told; at
/// rest in one place it takes no more than it would as one point.
TEST(ViewProjection, APathIsSeenByThePixel) {
    const auto projection = TestView(degrees(10.0, 179.0, 3e6)).projection();
    std::vector<halCore::Ecef> path;
    for (int i = 0; i < 20000; ++i)
        path.push_back(halCore::toEcef(
            degrees(10.0 + 60.0 * std::sin(1e-3 * i), 179.0 + 80.0 * std::sin(7e-4 * i + 1.0))));
    for (int i = 0; i < 1000; ++i) path.push_back(path.back());
    const auto seen = projection.seen(path);
    EXPECT_LT(seen.size(), 8000u);
    const auto beside = [](const Pixel& p, const std::pair<Pixel, Pixel>& s) {
        const double dx = s.second.x - s.first.x, dy = s.second.y - s.first.y;
        const double along =
            ((p.x - s.first.x) * dx + (p.y - s.first.y) * dy) / std::max(1e-9, dx * dx + dy * dy);
        const double t = std::clamp(along, 0.0, 1.0);
        return std::hypot(p.x - s.first.x - t * dx, p.y - s.first.y - t * dy);
    };
    double told = 0.0, drawn = 0.0;
    for (const auto& [from, to] : seen) told += OverlayEditor::distance(from, to);
    for (std::size_t i = 1; i < path.size(); ++i) {
        if (projection.isHiddenByEarth(path[i - 1]) || projection.isHiddenByEarth(path[i])) continue;
        const auto segment = projection.segment(path[i - 1], path[i]);
        if (!segment) continue;
        drawn += OverlayEditor::distance(segment->first, segment->second);
        double least = 1e9;
        if (i % 50 == 0)
            for (const auto& each : seen) least = std::min(least, beside(segment->second, each));
        EXPECT_TRUE(i % 50 != 0 || least < 0.71) << i << ": " << least;
    }
    EXPECT_NEAR(told / drawn, 1.0, 0.01);
}

TEST(ViewProjection, LinesAreCutAtTheEyeAndFarOutside) {
    const TestView view(degrees(10.0, 20.0, 1e5));
    const auto projection = view.projection();
    const auto below = halCore::toEcef(degrees(10.0, 20.0));
    const auto right = halCore::toEcef(degrees(10.0, 20.3));
    const auto behind = halCore::toEcef(degrees(10.0, 20.01, 3e5));

    const auto whole = projection.segment(below, right);
    ASSERT_TRUE(whole);
    EXPECT_NEAR(whole->first.x, 400.0, 1e-6);
    EXPECT_NEAR(whole->second.x, projection.pixel(right)->x, 1e-9);
    const auto cut = projection.segment(below, behind);
    ASSERT_TRUE(cut);
    EXPECT_NEAR(cut->first.x, 400.0, 1e-6);
    EXPECT_LE(std::abs(cut->second.x), 4.0 * TestView::kWidth);
    EXPECT_GT(cut->second.x, 400.0) << "leaves on the side to which it leans";
    EXPECT_FALSE(projection.segment(behind, halCore::toEcef(degrees(10.0, 20.0, 2e5))));
}

TEST(ViewProjection, KnowsNothingWithoutAView) {
    EXPECT_FALSE(ViewProjection().isValid());
    EXPECT_FALSE(ViewProjection().visiblePixel(halCore::toEcef(degrees(1.0, 2.0))));
    EXPECT_FALSE(ViewProjection({}, {}, {}, 800, 600).isValid()) << "empty matrices";
}

TEST(Grabbing, IsJudgedInPixels) {
    const TestView view(degrees(21.0, 180.0, 5e4));
    const auto projection = view.projection();
    const auto twice = view.projection(2.0);
    for (const double alt : {0.0, 8000.0}) {
        const PluginUtils::PUDrawPoint point(degrees(21.01, -179.99, alt), 0xFF);
        const auto at = *projection.visiblePixel(point.ecef());
        for (const auto& [away, once, dense] :
             {std::tuple(0.0, true, true), std::tuple(7.9, true, true), std::tuple(8.1, false, true),
              std::tuple(15.9, false, true), std::tuple(16.1, false, false)}) {
            SCOPED_TRACE(away);
            const auto cursor = *view.pick(at.x - away * 0.6, at.y + away * 0.8);
            EXPECT_EQ(point.canGrab({cursor, projection}), once);
            EXPECT_EQ(point.canGrab({cursor, twice}), dense);
        }
    }
    const PluginUtils::PUDrawPoint farSide(degrees(-21.0, 0.0), 0xFF);
    EXPECT_FALSE(farSide.canGrab({*view.pick(400, 300), projection}));
    const ViewProjection none;
    EXPECT_TRUE(farSide.canGrab({degrees(-21.0, 360.0), none})) << "no view yet: the same place";
    EXPECT_FALSE(farSide.canGrab({degrees(-21.0, 0.001), none}));
}

TEST(Grabbing, TheFirstOfManyWins) {
    const TestView view(degrees(0.0, 0.0, 1e6));
    const auto projection = view.projection();
    PluginUtils::PUDrawPoints points(0xFFFFFFFF);
    std::vector<Vec3> places;
    for (int i = 0; i < 1000; ++i) places.push_back(degrees(0.0, 0.001 * i));
    points.setPositions(places);
    EXPECT_EQ(points.grabbedBy({degrees(0.0, 0.0), projection}), 0u);
    const auto* const kept = &points.point(5);
    EXPECT_EQ(points.indexOf(kept), 5u);

    // Points that move are found where they are now, as by a walk over all.
    std::mt19937 random(1);
    std::uniform_real_distribution<double> beside(-0.3, 0.3);
    for (int i = 0; i < 300; ++i) {
        const std::size_t moved = random() % (i % 50 == 0 ? 1000 : 30);
        places[moved] = i % 7 == 0 ? degrees(0.0, 90.0) : degrees(beside(random), beside(random));
        if (i % 2 == 0)
            points.setPosition(moved, places[moved]);
        else
            points.setPositions(places);
        const PluginUtils::GrabbingCursor cursor(i % 3 == 0 ? places[moved] : places[random() % 30],
                                                 projection);
        const auto found = std::ranges::find_if(
            places, [&](const Vec3& place) { return cursor.grabs(place, halCore::toEcef(place)); });
        ASSERT_EQ(points.grabbedBy(cursor).value_or(places.size()),
                  static_cast<std::size_t>(found - places.begin()));
    }
    places.resize(10);
    points.setPositions(places);
    EXPECT_EQ(points.size(), 10u);
    EXPECT_EQ(&points.point(5), kept);
    EXPECT_FALSE(points.grabbedBy({degrees(0.0, 0.9), projection}));
    EXPECT_FALSE(points.indexOf(nullptr));
}

TEST(PixelScale, IsLearnedFromOnePlaceInBothPixels) {
    using OverlayEditor::pixelScaleFrom;
    EXPECT_EQ(pixelScaleFrom({400.3, 299.8}, 400, 300), 1.0);
    EXPECT_EQ(pixelScaleFrom({801.0, 599.0}, 400, 300), 2.0);
    EXPECT_EQ(pixelScaleFrom({150.4, 375.2}, 100, 250), 1.5);
    EXPECT_EQ(pixelScaleFrom({800.0, 300.0}, 400, 300), 0.0) << "the view has moved in between";
    EXPECT_EQ(pixelScaleFrom({440.0, 330.0}, 400, 300), 0.0);
    EXPECT_EQ(pixelScaleFrom({40.0, 600.0}, 20, 300), 0.0) << "too near to the edge to tell";
}

TEST(Labels, StayInsideTheView) {
    struct Case {
        const char* name;
        Pixel point;
        bool above;
        double left, top;
    };
    const Case cases[] = {
        {"below right", {400, 300}, false, 413, 313},
        {"above right", {400, 300}, true, 413, 267},
        {"no room above", {400, 20}, true, 413, 33},
        {"no room below", {400, 590}, false, 413, 557},
        {"no room to the right", {790, 300}, false, 600, 313},
        {"left of the view", {-100, 300}, false, 0, 313},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto box = OverlayEditor::placeLabel(c.point, 200, 20, c.above, 13, 800, 600);
        EXPECT_EQ(box.left, c.left);
        EXPECT_EQ(box.top, c.top);
    }
    EXPECT_EQ(OverlayEditor::placeLabel({100, 100}, 900, 20, false, 13, 800, 600).left, 0.0)
        << "wider than the view: its beginning is seen";
}

}  // namespace
