#include "globe/RingTangle.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace sandbox {

namespace {

/// Where an edge begins along the axis of a sweep.
struct Start {
    double low;
    std::uint32_t edge;
};

/// In runs that are merged then.
Work sortByLow(std::vector<Start>& starts) {
    constexpr std::size_t kRun = 1024;
    constexpr std::size_t kSortedInAUnit = 15;
    constexpr std::size_t kMergedInAUnit = 150;
    const std::size_t count = starts.size();
    const auto at = [&starts](std::size_t i) { return starts.begin() + static_cast<std::ptrdiff_t>(i); };
    for (std::size_t first = 0; first < count; first += kRun) {
        std::ranges::sort(at(first), at(std::min(count, first + kRun)), {}, &Start::low);
        co_yield kRun / kSortedInAUnit;
    }
    std::vector<Start> merged;
    for (std::size_t run = kRun; run < count; run *= 2) {
        merged.clear();
        merged.reserve(count);
        while (merged.size() < count) {
            std::size_t left = merged.size();
            const std::size_t middle = std::min(count, left + run);
            std::size_t right = middle;
            const std::size_t end = std::min(count, middle + run);
            while (merged.size() < end) {
                const std::size_t some = std::min(end, merged.size() + kRun);
                while (merged.size() < some) {
                    const bool takesRight =
                        left == middle || (right < end && starts[right].low < starts[left].low);
                    merged.push_back(starts[takesRight ? right++ : left++]);
                }
                co_yield kRun / kMergedInAUnit;
            }
        }
        starts.swap(merged);
    }
}

/// Goes along the axis across which the edges are shorter, and counts what crosses.
class Sweep {
  public:
    explicit Sweep(const FlatRing& ring) : ring_(ring) {}

    Work chooseAxis() {
        constexpr std::size_t kInAUnit = 500;
        double across[2] = {0.0, 0.0};
        for (Pieces some(ring_.size(), kInAUnit); some.next(); co_yield some.units())
            for (std::size_t i = some.first; i < some.last; ++i) {
                across[0] += std::abs(end(i).x - ring_[i].x);
                across[1] += std::abs(end(i).y - ring_[i].y);
            }
        along_ = across[0] <= across[1] ? &Flat::x : &Flat::y;
        aside_ = across[0] <= across[1] ? &Flat::y : &Flat::x;
    }

    /// Whether the first edges alone are a tangle.
    Work run(std::size_t edges, bool& tangled) {
        constexpr std::size_t kInAUnit = 200;
        std::vector<Start> starts;
        starts.reserve(edges);
        for (Pieces some(edges, kInAUnit); some.next(); co_yield some.units())
            for (std::size_t i = some.first; i < some.last; ++i)
                starts.push_back({low(i, along_), static_cast<std::uint32_t>(i)});
        co_await sortByLow(starts);
        testsLeft_ = 200 * edges + 1000000;
        crossings_ = 0;
        open_.clear();
        std::size_t told = testsLeft_;
        constexpr std::size_t kTests = 10000;
        constexpr std::size_t kTestsInAUnit = 200;
        for (const Start& start : starts) {
            const Edge edge = this->edge(start);
            for (std::size_t next = 0; next < open_.size();) {
                next = meet(edge, next, std::min(open_.size(), next + kTests));
                if (testsLeft_ == 0 || crossings_ > kMostCrossings) {
                    tangled = true;
                    co_return;
                }
                if (told < testsLeft_ + kTests) continue;
                co_yield (told - testsLeft_) / kTestsInAUnit;
                told = testsLeft_;
            }
            open_.push_back(edge);
        }
    }

  private:
    static constexpr std::size_t kMostCrossings = 200;

    /// What most tests need, side by side in memory.
    struct Edge {
        double low, high;            ///< along the axis
        double lowAside, highAside;  ///< across it
        std::uint32_t number;
    };
    Edge edge(const Start& start) const {
        const std::uint32_t i = start.edge;
        return {start.low, high(i, along_), low(i, aside_), high(i, aside_), i};
    }

    /// Holds an edge against the open ones from one on, up to another. \return the next one
    std::size_t meet(const Edge& edge, std::size_t next, std::size_t last) {
        while (next < last && testsLeft_ > 0 && crossings_ <= kMostCrossings) {
            --testsLeft_;
            const Edge& other = open_[next];
            if (other.high < edge.low) {
                open_[next] = open_.back();
                open_.pop_back();
                last = std::min(last, open_.size());
                continue;
            }
            if (other.lowAside <= edge.highAside && edge.lowAside <= other.highAside &&
                cross(other.number, edge.number))
                ++crossings_;
            ++next;
        }
        return next;
    }
    const Flat& end(std::size_t edge) const { return ring_[edge + 1 == ring_.size() ? 0 : edge + 1]; }
    double low(std::size_t edge, double Flat::*axis) const {
        return std::min(ring_[edge].*axis, end(edge).*axis);
    }
    double high(std::size_t edge, double Flat::*axis) const {
        return std::max(ring_[edge].*axis, end(edge).*axis);
    }
    /// In their midst: neighbours, which share a corner, do not.
    bool cross(std::size_t e, std::size_t f) const {
        const auto side = [](const Flat& a, const Flat& b, const Flat& c) {
            return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
        };
        const Flat &a = ring_[e], &b = end(e), &c = ring_[f], &d = end(f);
        return side(a, b, c) * side(a, b, d) < 0.0 && side(c, d, a) * side(c, d, b) < 0.0;
    }

    const FlatRing& ring_;
    double Flat::*along_ = nullptr;
    double Flat::*aside_ = nullptr;
    std::vector<Edge> open_;
    std::size_t testsLeft_ = 0;
    std::size_t crossings_ = 0;
};

}  // namespace

Work findTangle(const FlatRing& ring, bool& tangled) {
    // What is badly tangled shows it at its beginning: there is no need to sort all of it.
    constexpr std::size_t kBeginning = 2000;
    Sweep sweep(ring);
    co_await sweep.chooseAxis();
    if (ring.size() > 2 * kBeginning) co_await sweep.run(kBeginning, tangled);
    if (!tangled) co_await sweep.run(ring.size(), tangled);
}

}  // namespace sandbox
