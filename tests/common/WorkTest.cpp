#include <chrono>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "common/Work.h"

namespace {

/// Counts down in a tree of parts, and notes the way.
Work count(int from, std::vector<int>& way) {
    way.push_back(from);
    co_yield 1;
    for (int i = 1; i < from; ++i) co_await count(from - i, way);
    if (from == 7) throw std::runtime_error("seven");
    way.push_back(-from);
}

TEST(Work, GoesTheSameWayHoweverOftenItStops) {
    std::vector<int> whole;
    count(6, whole).finish();
    std::vector<int> pieces;
    int stops = 0;
    for (Work work = count(6, pieces);; ++stops) {
        Slice over(0, std::chrono::milliseconds(0));
        if (work.goOn(over)) break;
    }
    EXPECT_EQ(pieces, whole);
    EXPECT_EQ(stops, static_cast<int>(whole.size() / 2));
}

TEST(Work, GivesWhatAPartThrows) {
    std::vector<int> way;
    Work work = count(8, way);
    EXPECT_THROW(work.finish(), std::runtime_error);
    EXPECT_EQ(way[1], 7);
    // Given up in the midst, it leaves nothing behind (see the sanitizers).
    Work given = count(6, way);
    Slice over(0, std::chrono::milliseconds(0));
    EXPECT_FALSE(given.goOn(over));
}

}  // namespace
