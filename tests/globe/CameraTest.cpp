#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "globe/Camera.h"

namespace sandbox {
namespace {

using halCore::Ecef;
using halCore::kHalfPi;
using halCore::kPi;
using halCore::kRadiansPerDegree;
using halCore::kTwoPi;
using halCore::localFrame;
using halCore::Vec3;

Vec3 at(double lat, double lon, double alt = 0.0) {
    return {lat * kRadiansPerDegree, lon * kRadiansPerDegree, alt};
}

Camera looking(const Vec3& center, double range, double azimuth = 0.0, double elevation = 90.0) {
    Camera camera;
    camera.setViewport(1000, 600);
    camera.setCenter(center);
    camera.setRangeAzimuthElevation(range, azimuth * kRadiansPerDegree, elevation * kRadiansPerDegree);
    return camera;
}

TEST(Camera, EyeStandsAtRangeAzimuthAndElevation) {
    const Camera down = looking(at(21.3, -158), 5000.0);
    const Vec3 eye = down.eyePosition();
    EXPECT_NEAR(eye.lat(), 21.3 * kRadiansPerDegree, 1e-12);
    EXPECT_NEAR(eye.lon(), -158 * kRadiansPerDegree, 1e-12);
    EXPECT_NEAR(eye.alt(), 5000.0, 1e-6);

    // Looking north along 30° of elevation from the equator: the eye is south, and up by range sin 30°.
    const Camera slanted = looking(at(0, 10), 1000.0, 0.0, 30.0);
    EXPECT_NEAR(slanted.eye().z, -1000.0 * std::cos(30 * kRadiansPerDegree), 1e-6);
    EXPECT_NEAR(dot(slanted.eye() - toEcef(at(0, 10)), localFrame(0, 10 * kRadiansPerDegree).up), 500.0,
                1e-6);
    EXPECT_GT(looking(at(45, 7), 50.0, 123.0, 0.0).eyePosition().alt(), 0.0);
}

TEST(Camera, ScreenDirectionsFollowTheAzimuth) {
    struct Case {
        double azimuth;
        double lat, lon;  // of a place a little way off the centre 0/0
        int right, down;  // where it must appear from the middle
    };
    const Case cases[] = {{0, 0.01, 0, 0, -1},  {0, 0, 0.01, 1, 0},   {90, 0, 0.01, 0, -1},
                          {90, 0.01, 0, -1, 0}, {180, 0.01, 0, 0, 1}, {270, 0, 0.01, 0, 1}};
    for (const Case& c : cases) {
        const Projected p = looking(at(0, 0), 10000.0, c.azimuth).project(at(c.lat, c.lon));
        EXPECT_TRUE(p.visible);
        EXPECT_NEAR(p.x - 500.0, c.right * std::abs(p.x - 500.0), 1e-6) << c.azimuth;
        EXPECT_NEAR(p.y - 300.0, c.down * std::abs(p.y - 300.0), 1e-6) << c.azimuth;
        EXPECT_GT(std::hypot(p.x - 500.0, p.y - 300.0), 50.0);
    }
    EXPECT_NEAR(looking(at(50, 8), 2e5, 40, 30).project(at(50, 8)).x, 500.0, 1e-6);
    EXPECT_NEAR(looking(at(50, 8), 2e5, 40, 30).project(at(50, 8)).y, 300.0, 1e-6);
}

/// What is picked lies on the ellipsoid, projects back onto the pixel, and is never hidden.
TEST(Camera, PickAndProjectAreInverse) {
    const Vec3 centers[] = {at(0, 0),          at(21.3, -158), at(90, 0),
                            at(-89.99999, 40), at(-17, 180),   at(60, -179.9999)};
    for (const Vec3& center : centers) {
        for (const double range : {50.0, 1e4, 3e5, 4e6, 5e7}) {
            for (const double elevation : {90.0, 45.0, 8.0}) {
                const Camera camera = looking(center, range, 33.0, elevation);
                int hits = 0;
                for (double x = 0.5; x < 1000; x += 99.9) {
                    for (double y = 0.5; y < 600; y += 66.6) {
                        const auto picked = camera.pick(x, y);
                        if (!picked) continue;
                        ++hits;
                        EXPECT_EQ(picked->alt(), 0.0);
                        const Projected back = camera.project(*picked);
                        EXPECT_TRUE(back.visible);
                        // A nanometre on the ground, or the grain of doubles far away.
                        EXPECT_NEAR(back.x, x, 1e-6 + 2e-7 * 50.0 / range * 1000.0);
                        EXPECT_NEAR(back.y, y, 1e-6 + 2e-7 * 50.0 / range * 1000.0);
                    }
                }
                EXPECT_GT(hits, 0) << center.lat() << ' ' << range << ' ' << elevation;
            }
        }
    }
}

TEST(Camera, PickMissesTheSky) {
    const Camera whole = looking(at(0, 0), 5e7);
    EXPECT_FALSE(whole.pick(5, 5));
    EXPECT_TRUE(whole.pick(500, 300));
    EXPECT_FALSE(looking(at(0, 0), 1000.0, 0.0, 2.0).pick(500, 1));
}

TEST(Camera, TheEarthHidesWhatIsBehind) {
    struct Case {
        const char* what;
        Vec3 place;
        bool visible;
    };
    // The eye is 10,000 km above 0/0; the horizon is acos(R / (R + h)) = 67.08° away.
    const Case cases[] = {{"straight below", at(0, 0), true},
                          {"before the horizon", at(0, 67.0), true},
                          {"behind the horizon", at(0, 67.2), false},
                          {"behind the horizon, to the north", at(67.3, 0), false},
                          {"behind, but high enough", at(0, 75, 3e5), true},
                          {"behind, and not high enough", at(0, 75, 3e4), false},
                          {"the antipode", at(0, 180), false},
                          {"a little below the ground", at(0, 20, -100), true},
                          {"in the air on this side", at(0, 20, 2e5), true}};
    const Camera camera = looking(at(0, 0), 1e7);
    for (const Case& c : cases) EXPECT_EQ(camera.project(c.place).visible, c.visible) << c.what;
    EXPECT_FALSE(looking(at(0, 0), 1e6).project(at(0, 0, 5e6)).visible) << "behind the eye";
}

TEST(Camera, DraggingKeepsThePlaceUnderTheCursor) {
    struct Case {
        Vec3 center;
        double range, azimuth, elevation;
        double fromX, fromY, toX, toY;
    };
    const Case cases[] = {{at(21.3, -158), 2e7, 0, 90, 450, 250, 600, 350},
                          {at(0, 179.9), 5e6, 0, 90, 200, 300, 900, 100},
                          {at(45, 10), 80.0, 77, 30, 100, 500, 900, 400},
                          {at(88, 0), 5e6, 0, 90, 500, 400, 700, 100},  // across the pole
                          {at(90, 0), 1e6, 0, 90, 300, 300, 500, 500},
                          {at(-60, 20), 3e5, 200, 60, 500, 300, 100, 550}};
    for (const Case& c : cases) {
        Camera camera = looking(c.center, c.range, c.azimuth, c.elevation);
        const auto grabbed = camera.pick(c.fromX, c.fromY);
        ASSERT_TRUE(grabbed);
        // As the hand does it: in steps.
        for (int i = 1; i <= 20; ++i) {
            const double x = std::lerp(c.fromX, c.toX, i / 20.0);
            const double y = std::lerp(c.fromY, c.toY, i / 20.0);
            ASSERT_TRUE(camera.bring(*grabbed, x, y)) << c.center.lat() << " step " << i;
            const Projected now = camera.project(*grabbed);
            EXPECT_NEAR(now.x, x, 0.01);
            EXPECT_NEAR(now.y, y, 0.01);
        }
        EXPECT_NEAR(camera.range(), c.range, 1e-6);
        EXPECT_NEAR(camera.elevation(), c.elevation * kRadiansPerDegree, 1e-12);
    }
}

TEST(Camera, DraggingAwayFromThePolesKeepsNorthUp) {
    Camera camera = looking(at(30, 20), 1e7);
    const auto grabbed = camera.pick(500, 300);
    ASSERT_TRUE(camera.bring(*grabbed, 650, 420));
    EXPECT_EQ(camera.azimuth(), 0.0);
}

TEST(Camera, BringOffTheGlobeChangesNothing) {
    Camera camera = looking(at(0, 0), 5e7);
    const Camera before = camera;
    EXPECT_FALSE(camera.bring(at(5, 5), 3, 3));
    EXPECT_EQ(camera, before);
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

TEST(Camera, IgnoresNonsense) {
    Camera camera = looking(at(10, 10), 1e5);
    const Camera before = camera;
    camera.setCenter({NAN, 0, 0});
    camera.setRangeAzimuthElevation(1e5, INFINITY, 1.0);
    EXPECT_EQ(camera, before);
    camera.setCenter({2.0, 3.5 * kPi, -50.0});
    EXPECT_EQ(camera.center().lat(), kHalfPi);
    EXPECT_NEAR(camera.center().lon(), -kHalfPi, 1e-12);
    EXPECT_EQ(camera.center().alt(), 0.0);
    camera.setRangeAzimuthElevation(1e5, -0.1, 9.0);
    EXPECT_NEAR(camera.azimuth(), kTwoPi - 0.1, 1e-12);
    EXPECT_EQ(camera.elevation(), kHalfPi);
    camera.setViewport(0, -3);
    EXPECT_EQ(camera.width(), 1);
    EXPECT_EQ(camera.height(), 1);
}

/// The matrices handed to OpenGL say the same as project(), and the whole ground lies between the planes.
TEST(Camera, MatricesAgreeWithProject) {
    for (const double range : {50.0, 1e5, 5e7}) {
        const Camera camera = looking(at(47, 11), range, 25, 40);
        const auto m = camera.modelview();
        const auto p = camera.projection();
        for (const double x : {100.0, 500.0, 800.0}) {
            const auto place = camera.pick(x, 500.0);
            if (!place) continue;
            const Ecef v = toEcef(*place) - camera.eye();
            double eye[4], clip[4];
            for (std::size_t r = 0; r < 4; ++r)
                eye[r] = m[r] * v.x + m[4 + r] * v.y + m[8 + r] * v.z + m[12 + r];
            for (std::size_t r = 0; r < 4; ++r)
                clip[r] = p[r] * eye[0] + p[4 + r] * eye[1] + p[8 + r] * eye[2] + p[12 + r] * eye[3];
            EXPECT_NEAR((clip[0] / clip[3] + 1.0) * 500.0, x, 1e-4);
            EXPECT_NEAR((1.0 - clip[1] / clip[3]) * 300.0, 500.0, 1e-4);
            EXPECT_LT(std::abs(clip[2] / clip[3]), 1.0);
        }
    }
}

}  // namespace
}  // namespace sandbox
