#include <algorithm>
#include <cstdlib>
#include <random>

#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "globe/LineRaster.h"

namespace sandbox {
namespace {

/// Thousands of lines over each other look as if each had been drawn on all of its pixels, which wide ones
/// are where they may be rough.
TEST(LineRaster, WhatIsFullIsNotDrawnAgain) {
    Camera camera;
    camera.setViewport(150, 110);
    camera.setCenter({0.3, 0.5, 0.0});
    camera.setRange(100e3);
    LineRaster whole(camera, 1.0);
    whole.setQuality(LineRaster::Quality::Rough);
    LineRaster raster(camera, 1.0);
    std::mt19937 random(7);
    std::uniform_real_distribution<double> any(-0.01, 0.01);
    std::size_t cost[2] = {};
    for (int i = 0; i < 8000; ++i) {
        DrawList::Line line;
        for (auto k = 2 + random() % 2; k > 0; --k)
            line.points.push_back(halCore::toEcef({0.3 + any(random), 0.5 + any(random), 0.0}));
        line.width = 4.0F + static_cast<float>(random() % 3);
        line.stroke = i % 5 == 0 ? Stroke::Dashed : Stroke::Solid;
        // Now and then there is another colour, or as much of the same.
        const auto phase = static_cast<std::uint8_t>(i / 1500 * 40);
        line.color = {phase, 200, 30, static_cast<std::uint8_t>(i % 1500 < 1490 ? 112 : 255)};
        if (i == 5000)
            for (LineRaster* picture : {&whole, &raster}) picture->clear(QRect(20, 30, 60, 40));
        cost[0] += whole.draw(line);
        cost[1] += raster.draw(line);
        if (i % 400 != 399 && i % 1500 != 0) continue;
        for (std::size_t p = 0; p < raster.pixels().size(); ++p)
            for (int channel = 0; channel < 32; channel += 8) {
                const auto of = [&](const LineRaster& picture) {
                    return static_cast<int>(picture.pixels()[p] >> channel & 255);
                };
                ASSERT_NEAR(of(raster), of(whole), 3) << i;
            }
    }
    EXPECT_LT(10 * cost[1], 9 * cost[0]);
}

/// What the earth hides of a long piece is hidden of short ones in its place.
TEST(LineRaster, LongPiecesAreHiddenAsShortOnes) {
    std::mt19937 random(9);
    std::uniform_real_distribution<double> any(-1.0, 1.0);
    int drawn = 0;
    for (int i = 0; i < 300; ++i) {
        Camera camera;
        camera.setViewport(300, 200);
        camera.setCenter({any(random), 3.0 * any(random), 0.0});
        camera.setRange(2e7);
        const halCore::Ecef from = halCore::toEcef({1.5 * any(random), 3.1 * any(random), 0.0});
        const halCore::Ecef to =
            halCore::toEcef({1.5 * any(random), 3.1 * any(random), 2e6 * std::max(any(random), 0.0)});
        DrawList::Line line;
        line.width = 4.0F;
        line.points = {from, to};
        LineRaster whole(camera, 1.0);
        whole.draw(line);
        line.points.clear();
        constexpr int kPieces = 60;
        for (int k = 0; k <= kPieces; ++k)
            line.points.push_back(from + (to - from) * (static_cast<double>(k) / kPieces));
        LineRaster pieces(camera, 1.0);
        pieces.draw(line);
        int differing = 0;
        for (std::size_t p = 0; p < whole.pixels().size(); ++p) {
            const auto alpha = [p](const LineRaster& raster) {
                return static_cast<int>(raster.pixels()[p] >> 24);
            };
            drawn += alpha(whole) > 0 ? 1 : 0;
            differing += std::abs(alpha(whole) - alpha(pieces)) > 30 ? 1 : 0;
        }
        // The seam is soft.
        ASSERT_LE(differing, 12) << i;
    }
    EXPECT_GT(drawn, 10000);
}

}  // namespace
}  // namespace sandbox
