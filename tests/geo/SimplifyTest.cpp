#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "geo/GeodesicPath.h"

namespace halCore {
namespace {

double distance(const Ecef& p, const Ecef& a, const Ecef& b) {
    const Ecef v = b - a, w = p - a;
    const double size = dot(v, v);
    return length(w - v * (size > 0.0 ? std::clamp(dot(w, v) / size, 0.0, 1.0) : 0.0));
}

/// In one go and run by run: both ends stay, and every point is by the line between the nearest ones that
/// stay.
TEST(Simplify, EveryPointIsWithinTheTolerance) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> any(-1.0, 1.0);
    for (const bool zigzag : {true, false})
        for (const std::size_t run : {5000U, 700U, 3U})
            for (const double tolerance : {0.0, 2.0, 50.0, 1e7}) {
                PlacedPath all, path;
                Ecef place;
                std::size_t first = 0;
                for (int i = 0; i < 4000; ++i) {
                    place = zigzag ? Ecef{i * 10.0, (i % 2 == 0 ? 100.0 : -100.0) * (1.0 - i / 4000.0), 0.0}
                                   : place + Ecef{any(random) * 9.0, any(random) * 9.0, any(random)};
                    all.add(Vec3(i, 0.0, 0.0), place);
                    path.add(Vec3(i, 0.0, 0.0), place);
                    if (path.points.size() <= first + run) continue;
                    simplify(path, tolerance, first);
                    first = path.points.size() - 1;
                }
                simplify(path, tolerance, first);
                ASSERT_EQ(path.points.size(), path.places.size());
                std::size_t next = 0;
                for (std::size_t i = 0; i < all.places.size(); ++i) {
                    ASSERT_LT(next, path.points.size());
                    const bool stays = path.points[next].x() == all.points[i].x();
                    ASSERT_TRUE(stays || (next > 0 && distance(all.places[i], path.places[next - 1],
                                                               path.places[next]) <= tolerance))
                        << i;
                    if (stays) ++next;
                }
                EXPECT_EQ(next, path.points.size());
                EXPECT_LE(path.points.size(), tolerance > 1e6 ? 2 + all.points.size() / run : 4000);
            }
}

}  // namespace
}  // namespace halCore
