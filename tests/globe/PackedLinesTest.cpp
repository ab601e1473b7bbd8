#include <cmath>
#include <random>
#include <tuple>
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
            line.color.b = static_cast<std::uint8_t>(i);
            line.width = static_cast<float>(i);
            line.stroke = i % 2 == 0 ? Stroke::Dotted : Stroke::Dashed;
            line.metres = i + 0.5;
            // Each of them in another rhythm.
            line.closed = i & 1;
            line.solid = i & 2;
            line.overBodies = i & 4;
            line.leads = i & 8;
            line.trails = i & 16;
            lines.add(line, tolerance);
            given.push_back(line);
        }
        ASSERT_EQ(lines.size(), given.size());
        auto expected = given.begin();
        for (const DrawList::Line& line : lines) {
            const DrawList::Line& was = *expected++;
            const auto looks = [](const DrawList::Line& l) {
                return std::tuple(l.points.size(), l.color.b, l.width, l.stroke, l.metres, l.closed, l.solid,
                                  l.overBodies, l.leads, l.trails);
            };
            ASSERT_EQ(looks(line), looks(was));
            for (std::size_t k = 0; k < line.points.size(); ++k)
                ASSERT_LE(length(line.points[k] - was.points[k]), tolerance / 100.0);
        }
    }
}

}  // namespace
}  // namespace sandbox
