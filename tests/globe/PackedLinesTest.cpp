#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "geo/Ecef.h"
#include "globe/PackedLines.h"

namespace sandbox {
namespace {

using halCore::Ecef;

/// Lines come back as they were, each point as near as its detail asks for.
TEST(PackedLines, ComeBack) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> any(-1.0, 1.0);
    for (const double tolerance : {0.0, 2.0, 250.0, 31250.0}) {
        std::vector<DrawList::Line> given;
        PackedLines lines;
        for (int i = 0; i < 200; ++i) {
            DrawList::Line line;
            const double reach = std::pow(10.0, 4.0 + 3.0 * any(random));
            const Ecef start{6e6 * any(random), 6e6 * any(random), 6e6 * any(random)};
            for (auto k = random() % 5; k > 0; --k)
                line.points.push_back(start + Ecef{any(random), any(random), any(random)} * reach);
            const auto bit = [&] { return random() % 2 == 0; };
            line.color = {1, 2, static_cast<std::uint8_t>(i), 4};
            line.width = static_cast<float>(i);
            line.stroke = bit() ? Stroke::Dotted : Stroke::Dashed;
            line.closed = bit();
            line.solid = bit();
            line.overBodies = bit();
            line.leads = bit();
            line.trails = bit();
            line.metres = i + 0.5;
            lines.add(line, tolerance);
            given.push_back(line);
        }
        ASSERT_EQ(lines.size(), given.size());
        auto expected = given.begin();
        for (const DrawList::Line& line : lines) {
            const DrawList::Line& was = *expected++;
            ASSERT_EQ(line.points.size(), was.points.size());
            for (std::size_t k = 0; k < line.points.size(); ++k)
                ASSERT_LE(length(line.points[k] - was.points[k]), tolerance / 100.0);
            ASSERT_TRUE(line.color == was.color && line.width == was.width && line.stroke == was.stroke &&
                        line.closed == was.closed && line.solid == was.solid && line.metres == was.metres &&
                        line.overBodies == was.overBodies && line.leads == was.leads &&
                        line.trails == was.trails);
        }
    }
}

}  // namespace
}  // namespace sandbox
