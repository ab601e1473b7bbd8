#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "globe/Camera.h"
#include "globe/PlainSight.h"

namespace sandbox {
namespace {

using halCore::Ecef;
using halCore::kHalfPi;
using halCore::kPi;

/// Nothing in a box in plain sight is hidden, nor what lies a pixel's width of ground beside it; and what the
/// eye sees from above is in plain sight.
TEST(PlainSight, IsFarFromTheHorizon) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> any(-1.0, 1.0);
    int plain = 0;
    for (int round = 0; round < 20000; ++round) {
        Camera camera;
        camera.setViewport(400, 300);
        const halCore::Vec3 center(kHalfPi * any(random), kPi * any(random), 0.0);
        camera.setCenter(center);
        const double range = std::pow(10.0, 4.5 + 3.0 * any(random));
        camera.setRangeAzimuthElevation(range, kPi * any(random), kHalfPi * std::abs(any(random)));
        const double reach = 0.1 * kPi * any(random) * any(random);
        const Ecef place =
            halCore::toEcef({center.lat() + reach, center.lon() + reach, 1000.0 * any(random)});
        const double size = range * std::pow(10.0, -2.5 + 1.5 * any(random));
        const auto near = [&] { return place + Ecef{any(random), any(random), any(random)} * size; };
        BoundingBox box;
        for (int i = 0; i < 8; ++i) box.add(near());
        const bool is = isInPlainSight(box, camera, 1.0);
        const Ecef sight = camera.eye() - place;
        const double sine = dot(normalized(sight), normalized(place));
        ASSERT_TRUE(is || sine < 0.6 || size > 0.01 * length(sight)) << round;
        if (!is) continue;
        ++plain;
        for (const Ecef& corner : box.corners()) {
            const double pixel = length(corner - camera.eye()) * camera.metersPerPixel() / range;
            ASSERT_FALSE(isHiddenByEarth(camera.eye(), corner + normalized(corner - camera.eye()) * pixel))
                << round;
        }
    }
    EXPECT_GT(plain, 2000);
}

}  // namespace
}  // namespace sandbox
