#include "format/UntouchedPoints.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/Strings.h"
#include "format/Keyword.h"
#include "format/ShapeFields.h"

namespace halCore::ZEL {
namespace {

/// Fewer are looked at as all lines are. More than a box has always stay.
constexpr std::size_t kMany = 256;
constexpr std::size_t kBeside = 8;

/// Lines that may add a point, by their keyword. Most begin as the one before.
class PointLines {
  public:
    bool operator()(std::string_view line) {
        if (!beginning_.empty() && line.starts_with(beginning_)) return true;
        std::size_t from = 0;
        while (from < line.size() && UTILS::isBlank(line[from])) ++from;
        std::size_t to = from;
        while (to < line.size() && !UTILS::isBlank(line[to])) ++to;
        constexpr std::size_t longest = 6;
        if (to == from || to - from > longest || to == line.size()) return false;
        switch (findKeyword(UTILS::lowerCase(line.substr(from, to - from))).action) {
            case KeywordAction::AbsolutePoint:
            case KeywordAction::RelativePoint:
            case KeywordAction::GridPoint:
                beginning_ = line.substr(0, to + 1);
                return true;
            default:
                return false;
        }
    }

  private:
    std::string_view beginning_;
};

using Points = std::vector<Vec3>;
using Run = UntouchedPoints::Run;

/// Runs of points that are the same, without those beside others.
std::vector<Run> sameRuns(const Points& old, const Points& now) {
    std::vector<Run> runs;
    std::size_t count = 0;
    const auto add = [&](Run run) {
        if (run.begin != 0) run.begin += kBeside, run.now += kBeside;
        if (run.end != old.size()) run.end = run.end > kBeside ? run.end - kBeside : 0;
        // All of the list would leave too few.
        if (run.begin == 0 && run.end == old.size()) run.end = run.end > kBeside ? run.end - kBeside : 0;
        if (run.end <= run.begin) return;
        count += run.end - run.begin;
        runs.push_back(run);
    };
    if (old.size() == now.size()) {
        for (std::size_t i = 0; i < old.size();) {
            const auto [end, other] = std::mismatch(old.begin() + static_cast<std::ptrdiff_t>(i), old.end(),
                                                    now.begin() + static_cast<std::ptrdiff_t>(i));
            const auto stop = static_cast<std::size_t>(end - old.begin());
            if (stop > i) add({i, stop, i});
            i = stop + 1;
        }
    } else {
        const auto front = std::ranges::mismatch(old, now);
        const auto back = std::mismatch(old.rbegin(), std::make_reverse_iterator(front.in1), now.rbegin(),
                                        std::make_reverse_iterator(front.in2));
        const auto last = static_cast<std::size_t>(back.first - old.rbegin());
        if (front.in1 != old.begin()) add({0, static_cast<std::size_t>(front.in1 - old.begin()), 0});
        if (last != 0) add({old.size() - last, old.size(), now.size() - last});
    }
    return count < kMany ? std::vector<Run>() : runs;
}

}  // namespace

UntouchedPoints UntouchedPoints::find(std::string_view block, const ZelShape& read, const ZelShape& now) {
    const Points* const old = pointsOf(read);
    const Points* const is = pointsOf(now);
    if (!old || !is || read.isRelative() != now.isRelative()) return {};
    UntouchedPoints untouched{.lines = {}, .runs = sameRuns(*old, *is)};
    if (untouched.runs.empty()) return {};

    PointLines isPoint;
    std::size_t count = 0;
    auto run = untouched.runs.begin();
    while (!block.empty()) {
        const std::string_view line = block.substr(0, std::min(block.find('\n'), block.size() - 1) + 1);
        block.remove_prefix(line.size());
        if (!isPoint(line)) continue;
        const std::size_t index = count++;
        if (run != untouched.runs.end() && index >= run->end) ++run;
        if (run == untouched.runs.end() || index < run->begin) continue;
        auto& lines = untouched.lines;
        if (!lines.empty() && lines.back().data() + lines.back().size() == line.data())
            lines.back() = {lines.back().data(), lines.back().size() + line.size()};
        else
            lines.push_back(line);
    }
    // As many as there are points: each has added one.
    return count == old->size() ? untouched : UntouchedPoints();
}

std::string UntouchedPoints::rest(std::string_view block) const {
    std::string text;
    for (const std::string_view part : lines) {
        const auto before = static_cast<std::size_t>(part.data() - block.data());
        text.append(block.substr(0, before));
        block.remove_prefix(before + part.size());
    }
    return text.append(block);
}

WithoutPoints::WithoutPoints(ZelShape& shape, const UntouchedPoints& untouched) {
    if (untouched.empty()) return;
    points_ = pointsOf(shape);
    all_ = std::exchange(*points_, {});
    const auto at = [this](std::size_t index) { return all_.begin() + static_cast<std::ptrdiff_t>(index); };
    std::size_t done = 0;
    for (const Run& run : untouched.runs) {
        points_->insert(points_->end(), at(done), at(run.now));
        done = run.now + (run.end - run.begin);
    }
    points_->insert(points_->end(), at(done), all_.end());
}

WithoutPoints::~WithoutPoints() {
    if (points_) *points_ = std::move(all_);
}

}  // namespace halCore::ZEL
