#include <algorithm>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "geo/Ecef.h"
#include "geo/GeodesicPath.h"
#include "globe/Camera.h"
#include "globe/EarthDisc.h"
#include "globe/FillCost.h"
#include "globe/ShapeText.h"

namespace sandbox {
namespace {

using halCore::Ecef;
using halCore::kPi;
using halCore::Vec3;

TEST(Camera, EyeStandsAtRangeAzimuthAndElevation) {
    EXPECT_LT(length(looking(at(21.3, -158), 5000.0).eye() - toEcef(at(21.3, -158, 5000.0))), 1e-6);
    // Looking north along 30° of elevation from the equator: the eye is south, and up by range sin 30°.
    const Camera slanted = looking(at(0, 0), 1000.0, 0.0, 30.0);
    EXPECT_NEAR(slanted.eye().z, -1000.0 * std::cos(30 * kRadiansPerDegree), 1e-6);
    EXPECT_NEAR(slanted.eye().x - toEcef(at(0, 0)).x, 500.0, 1e-6);
    EXPECT_GT(looking(at(45, 7), 50.0, 123.0, 0.0).eyePosition().alt(), 0.0);
}

TEST(Camera, ScreenDirectionsFollowTheAzimuth) {
    // The azimuth, a place a little way off the centre, and where it must appear: to the right, down.
    const double cases[][5] = {{0, 0.01, 0, 0, -1},  {0, 0, 0.01, 1, 0},   {90, 0, 0.01, 0, -1},
                               {90, 0.01, 0, -1, 0}, {180, 0.01, 0, 0, 1}, {270, 0, 0.01, 0, 1}};
    for (const auto& [azimuth, lat, lon, right, down] : cases) {
        const Projected p = looking(at(0, 0), 10000.0, azimuth).project(at(lat, lon));
        const double far = std::hypot(p.x - 500.0, p.y - 300.0);
        EXPECT_TRUE(p.visible && far > 50.0);
        EXPECT_NEAR(p.x - 500.0, right * far, 1e-6) << azimuth;
        EXPECT_NEAR(p.y - 300.0, down * far, 1e-6) << azimuth;
    }
}

/// What is picked lies on the ellipsoid, projects back onto the pixel, and is never hidden. The matrices
/// handed to OpenGL say the same, and the ground lies between their planes.
TEST(Camera, PickAndProjectAreInverse) {
    for (const Vec3& center :
         {at(0, 0), at(21.3, -158), at(90, 0), at(-89.99999, 40), at(-17, 180), at(60, -179.9999)})
        for (const double range : {50.0, 1e4, 3e5, 4e6, 5e7})
            for (const double elevation : {90.0, 45.0, 8.0}) {
                const Camera camera = looking(center, range, 33.0, elevation);
                const auto m = camera.modelview();
                const auto p = camera.projection();
                // A nanometre on the ground, or the grain of doubles far away.
                const double grain = 1e-6 + 2e-7 * 50.0 / range * 1000.0;
                int hits = 0;
                for (double x = 0.5; x < 1000; x += 99.9)
                    for (double y = 0.5; y < 600; y += 66.6) {
                        const auto picked = camera.pick(x, y);
                        if (!picked) continue;
                        ++hits;
                        EXPECT_EQ(picked->alt(), 0.0);
                        const Projected back = camera.project(*picked);
                        EXPECT_TRUE(back.visible);
                        EXPECT_NEAR(back.x, x, grain);
                        EXPECT_NEAR(back.y, y, grain);
                        const Ecef v = toEcef(*picked) - camera.eye();
                        double eye[4], clip[4];
                        for (std::size_t r = 0; r < 4; ++r)
                            eye[r] = m[r] * v.x + m[4 + r] * v.y + m[8 + r] * v.z + m[12 + r];
                        for (std::size_t r = 0; r < 4; ++r)
                            clip[r] =
                                p[r] * eye[0] + p[4 + r] * eye[1] + p[8 + r] * eye[2] + p[12 + r] * eye[3];
                        EXPECT_NEAR((clip[0] / clip[3] + 1.0) * 500.0, x, 1e-4);
                        EXPECT_NEAR((1.0 - clip[1] / clip[3]) * 300.0, y, 1e-4);
                        EXPECT_LT(std::abs(clip[2] / clip[3]), 1.0);
                    }
                EXPECT_GT(hits, 0) << center.lat() << ' ' << range << ' ' << elevation;
            }
    EXPECT_FALSE(looking(at(0, 0), 5e7).pick(5, 5)) << "the sky";
    EXPECT_FALSE(looking(at(0, 0), 1000.0, 0.0, 2.0).pick(500, 1));
}

TEST(Camera, TheEarthHidesWhatIsBehind) {
    // The eye is 10,000 km above 0/0; the horizon is acos(R / (R + h)) = 67.08° away. What is high enough
    // behind it can be seen, and so can what is a little below the ground.
    const Camera camera = looking(at(0, 0), 1e7);
    for (const Vec3& seen : {at(0, 0), at(0, 67.0), at(0, 75, 3e5), at(0, 20, -100), at(0, 20, 2e5)})
        EXPECT_TRUE(camera.project(seen).visible) << seen.lon();
    for (const Vec3& hidden : {at(0, 67.2), at(67.3, 0), at(0, 75, 3e4), at(0, 180), at(0, 0, 1.1e7)})
        EXPECT_FALSE(camera.project(hidden).visible) << hidden.lon();
}

TEST(Camera, DraggingKeepsThePlaceUnderTheCursor) {
    // Centre, range, azimuth and elevation; from which pixel to which.
    const double cases[][9] = {
        {21.3, -158, 1.5e7, 0, 90, 450, 250, 600, 350}, {0, 179.9, 2.5e6, 0, 90, 200, 300, 900, 100},
        {45, 10, 80.0, 77, 30, 100, 500, 900, 400},     {-60, 20, 3e5, 200, 60, 500, 300, 100, 550},
        {88, 0, 5e6, 0, 90, 500, 400, 700, 100},  // across the pole
        {90, 0, 1e6, 0, 90, 300, 300, 500, 500}};
    for (const auto& [lat, lon, range, azimuth, elevation, fromX, fromY, toX, toY] : cases) {
        Camera camera = looking(at(lat, lon), range, azimuth, elevation);
        const Vec3 grabbed = *camera.pick(fromX, fromY);
        // As the hand does it: in steps.
        for (int i = 1; i <= 20; ++i) {
            const double x = std::lerp(fromX, toX, i / 20.0), y = std::lerp(fromY, toY, i / 20.0);
            ASSERT_TRUE(camera.bring(grabbed, x, y)) << lat << " step " << i;
            EXPECT_NEAR(camera.project(grabbed).x, x, 0.01);
            EXPECT_NEAR(camera.project(grabbed).y, y, 0.01);
        }
        EXPECT_NEAR(camera.range(), range, 1e-6);
        EXPECT_NEAR(camera.elevation(), elevation * kRadiansPerDegree, 1e-12);
        EXPECT_TRUE(lat > 80 || camera.azimuth() == azimuth * kRadiansPerDegree) << "north stays up";
    }
    Camera far = looking(at(0, 0), 5e7);
    EXPECT_FALSE(far.bring(at(5, 5), 3, 3)) << "off the globe";
    EXPECT_EQ(far, looking(at(0, 0), 5e7));
}

TEST(Camera, ZoomKeepsThePlaceUnderTheCursor) {
    Camera camera = looking(at(21.3, -158), 1e7);
    const Vec3 place = *camera.pick(620, 200);
    for (int i = 0; i < 30; ++i) camera.zoom(0.7, 620, 200);
    EXPECT_NEAR(camera.range(), 1e7 * std::pow(0.7, 30), 1.0);
    EXPECT_NEAR(camera.project(place).x, 620, 0.1);
    EXPECT_NEAR(camera.project(place).y, 200, 0.1);
    for (int i = 0; i < 200; ++i) camera.zoom(0.7, 1, 1);
    EXPECT_EQ(camera.range(), Camera::kMinimumRange);
    for (int i = 0; i < 200; ++i) camera.zoom(1.5, 500, 300);
    EXPECT_EQ(camera.range(), Camera::kMaximumRange);
}

/// Looked at from as far as it is long, a shape is in the view with room about it, whichever way it lies, and
/// so is what can be seen of the earth from 7,000 km.
TEST(Camera, ShowsWhatItLooksAtFromItsOwnLength) {
    for (const auto& [width, height] : {std::pair{1000, 700}, {1120, 625}, {454, 757}})
        for (const double meters : {5e3, 2.22e5, 4e6, 7e6})
            for (double azimuth = 0.0; azimuth < 6.28; azimuth += 0.1) {
                Camera camera = looking(at(36, 179.9), meters);
                camera.setViewport(width, height);
                double edge = meters < 7e6 ? 0.5 * meters : 1e7;
                Projected p = camera.project(halCore::geodesicFrom(camera.center(), azimuth, edge));
                // At most to the horizon.
                while (!p.visible)
                    p = camera.project(halCore::geodesicFrom(camera.center(), azimuth, edge *= 0.99));
                const double beside = std::min({p.x, width - p.x, p.y, height - p.y});
                EXPECT_GT(beside, 0.02 * std::min(width, height)) << meters << " " << azimuth;
            }
}

/// Each pixel of a view is in one part; those that show nothing but the earth are most of the earth's.
TEST(Camera, TheEarthsDiscIsCutFromTheView) {
    const double views[][3] = {{4e7, 0, 90}, {2.3e7, 0, 90}, {9e6, 40, 50}, {1e6, 70, 20}, {2e4, 200, 3}};
    for (const auto& [range, azimuth, elevation] : views) {
        const Camera camera = looking(at(20, 179.9), range, azimuth, elevation);
        const EarthDisc disc(camera, 1.0);
        std::vector<int> parts(1000 * 600);
        const auto take = [&](const std::vector<QRect>& rectangles, int weight) {
            for (const QRect& part : rectangles)
                for (int y = part.top(); y <= part.bottom(); ++y)
                    for (int x = part.left(); x <= part.right(); ++x)
                        parts.at(static_cast<std::size_t>(1000 * (599 - y) + x)) += weight;
        };
        take(disc.earth, 1);
        take(disc.rim, 10);
        int earth = 0, found = 0;
        for (int y = 0; y < 600; ++y)
            for (int x = y % 3; x < 1000; x += 3) {
                const int part = parts[static_cast<std::size_t>(1000 * y + x)];
                ASSERT_TRUE(part == 1 || part == 10) << x << ' ' << y;

                const bool shows = camera.pick(x - 1.5, y - 1.5) && camera.pick(x + 2.5, y - 1.5) &&
                                   camera.pick(x - 1.5, y + 2.5) && camera.pick(x + 2.5, y + 2.5);
                EXPECT_TRUE(shows || part == 10) << range << ": " << x << ' ' << y;
                earth += shows ? 1 : 0;
                found += part == 1 ? 1 : 0;
            }
        EXPECT_GT(found, earth / 4) << range;
    }
}

/// Each pixel in which a ball or a line is seen has been counted, and not many more.
TEST(FillCost, IsThatOfThePixels) {
    std::mt19937 random(7);
    const auto between = [&](double low, double high) {
        return low + (high - low) * static_cast<double>(random() % 10001) / 10000.0;
    };
    double seenInAll = 0.0;
    double countedInAll = 0.0;
    for (int round = 0; round < 2000; ++round) {
        const double range = std::exp(between(5, 16));
        const Camera camera = looking(at(between(-80, 80), 0), range, between(0, 360), between(2, 90));
        const FillCost cost(camera, 1.0);
        const auto somewhere = [&] {
            const double far = std::exp(between(-3, 1)) * range;
            return toEcef(camera.center()) + Ecef{between(-far, far), between(-far, far), between(-far, far)};
        };
        const auto compare = [&](std::size_t units, double seen) {
            const auto counted = 100.0 * static_cast<double>(units);
            EXPECT_GE(counted, 0.99 * seen) << round;
            seenInAll += seen;
            countedInAll += counted;
        };
        const Ecef middle = somewhere();
        const double radius = between(0, 0.5) * range;
        const Ecef v = middle - camera.eye();
        double seen = 0.0;
        for (int y = 5; y < 600; y += 10)
            for (int x = 5; x < 1000; x += 10) {
                const Ecef ray = normalized(camera.ray(x, y));
                seen += dot(v, ray) > 0.0 && length(cross(v, ray)) < radius ? 100.0 : 0.0;
            }
        // What is beyond the horizon costs nothing.
        if (const auto units = cost.of(BoundingBall(middle, radius)); units > 0) compare(units, seen);

        DrawList::Line line;
        line.points = {middle, somewhere(), somewhere()};
        line.width = 10.0F;
        seen = 0.0;
        Projected before;
        for (int i = 0; i < 2000; ++i) {
            const Ecef* const from = &line.points[i < 1000 ? 0 : 1];
            const Projected here = camera.project(from[0] + (from[1] - from[0]) * (i % 1000 / 1000.0));
            const auto inView = [](const Projected& p) {
                return p.visible && p.x > 0.0 && p.x < 1000.0 && p.y > 0.0 && p.y < 600.0;
            };
            if (i > 0 && inView(before) && inView(here))
                seen += 10.0 * std::hypot(here.x - before.x, here.y - before.y);
            before = here;
        }
        compare(cost.of(line), seen);
    }
    EXPECT_LT(countedInAll, 3.0 * seenInAll);
}

TEST(Camera, IgnoresNonsense) {
    Camera camera = looking(at(10, 10), 1e5);
    camera.setCenter({NAN, 0, 0});
    camera.setRangeAzimuthElevation(1e5, INFINITY, 1.0);
    EXPECT_EQ(camera, looking(at(10, 10), 1e5));
    camera.setCenter({2.0, 3.5 * kPi, -50.0});
    EXPECT_TRUE(camera.center().lat() == kPi / 2 && camera.center().alt() == 0.0);
    EXPECT_NEAR(camera.center().lon(), -kPi / 2, 1e-12);
    camera.setRangeAzimuthElevation(1e5, -0.1, 9.0);
    EXPECT_NEAR(camera.azimuth(), 2 * kPi - 0.1, 1e-12);
    EXPECT_EQ(camera.elevation(), kPi / 2);
    camera.setViewport(0, -3);
    EXPECT_TRUE(camera.width() == 1 && camera.height() == 1);
}

}  // namespace
}  // namespace sandbox
