#include <chrono>
#include <cmath>
#include <optional>
#include <random>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "geo/Ecef.h"
#include "globe/ShapeGeometry.h"
#include "globe/ShapePick.h"
#include "globe/ShapeText.h"

namespace sandbox {
namespace {

/// Laid aside as often as can be.
std::optional<PickedShape> picked(const OverlayScene& scene, const Camera& camera, double x, double y) {
    std::optional<PickedShape> result;
    Work work = pickShape(scene, camera, x, y, result);
    for (bool done = false; !done;) {
        Slice over(0, std::chrono::milliseconds(0));
        done = work.goOn(over);
    }
    return result;
}

/// Whatever is left out of the search because of where it lies: a click that reaches a line hits it, unless
/// something above is hit.
TEST(ShapePick, WhatIsSeenIsFound) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> any(-1.0, 1.0);
    int clicks = 0;
    for (int i = 0; i < 600; ++i) {
        std::ostringstream text;
        text << (i % 5 == 0 ? "sphere" : "circle") << "; centerlla " << 90.0 * any(random) << ' '
             << 180.0 * any(random) << ' ' << std::max(0.0, 1e6 * any(random)) << "; radius "
             << std::pow(10.0, 3.5 + 3.5 * any(random)) << "; linewidth " << 1 + random() % 255;
        OverlayScene scene;
        const auto top = scene.add(shapesOf(text.str() + " | circle; centerll 0 0; radius 1; off"));
        const OverlayScene::Entry& entry = *scene.find(top);
        DrawList list;
        appendGeometry(*entry.shapes[0], std::nullopt, 0.0, list);
        const halCore::Ecef& seen = list.lines[0].points[random() % list.lines[0].points.size()];
        halCore::Vec3 center = toGeodetic(seen);
        center.setLat(center.lat() + 0.2 * any(random));
        const Camera camera = looking(center, std::pow(10.0, 5.5 + 2.0 * any(random)), 180.0 * any(random),
                                      45.0 + 45.0 * any(random));
        DrawList coarse;
        appendGeometry(*entry.shapes[0], std::nullopt, camera.metersPerPixel(), coarse);
        const Projected at = camera.project(coarse.lines[0].points[0]);
        if (!at.visible) continue;
        ++clicks;
        const double reach = 5.9 + coarse.lines[0].width / 2.0;
        const double turn = halCore::kTwoPi * any(random);
        const auto found =
            picked(scene, camera, at.x + reach * std::sin(turn), at.y + reach * std::cos(turn));
        ASSERT_EQ(found, (PickedShape{top, 0})) << text.str();
    }
    EXPECT_GT(clicks, 100);
}

}  // namespace
}  // namespace sandbox
