#include "model/SharedPoints.h"

#include <algorithm>
#include <cstring>

namespace OverlayEditor {

using halCore::Vec3;

namespace {

/// More pieces would make looking through them slow: then all points are copied once.
constexpr std::size_t kMostPieces = 32;
/// So few points are copied rather than shared.
constexpr std::size_t kFewPoints = 64;

bool same(const Vec3* a, const Vec3* b, std::size_t count) {
    return std::memcmp(a, b, count * sizeof(Vec3)) == 0;
}

/// In blocks, as most of what is compared is the same.
std::size_t sameFront(const Vec3* a, const Vec3* b, std::size_t count) {
    constexpr std::size_t block = 256;
    std::size_t i = 0;
    while (i + block <= count && same(a + i, b + i, block)) i += block;
    while (i < count && same(a + i, b + i, 1)) ++i;
    return i;
}

std::size_t sameBack(const Vec3* a, const Vec3* b, std::size_t count) {
    constexpr std::size_t block = 256;
    std::size_t left = count;
    while (left >= block && same(a + left - block, b + left - block, block)) left -= block;
    while (left > 0 && same(a + left - 1, b + left - 1, 1)) --left;
    return count - left;
}

}  // namespace

SharedPoints::SharedPoints(std::span<const Vec3> points, const SharedPoints* like) {
    if (points.size() <= kFew) {
        std::ranges::copy(points, std::get<Few>(held_).begin());
        size_ = points.size();
        return;
    }
    Pieces& pieces = held_.emplace<Pieces>();
    if (like && points.size() > kFewPoints) {
        const std::size_t front = like->commonFront_(points);
        const std::size_t back = like->commonBack_(points.subspan(front));
        const std::size_t both = std::min(like->size() - front, back);
        appendFrom_(*like, 0, front);
        append_(points.subspan(front, points.size() - front - both));
        appendFrom_(*like, like->size() - both, both);
        if (pieces.size() <= kMostPieces) return;
        pieces.clear();
        size_ = 0;
    }
    append_(points);
}

std::size_t SharedPoints::runCount_() const {
    const auto* const pieces = std::get_if<Pieces>(&held_);
    return pieces ? pieces->size() : size_ > 0 ? 1 : 0;
}

std::span<const Vec3> SharedPoints::run_(std::size_t index) const {
    if (const auto* const pieces = std::get_if<Pieces>(&held_)) return (*pieces)[index].points();
    return std::span(std::get<Few>(held_)).first(size_);
}

std::size_t SharedPoints::commonFront_(std::span<const Vec3> points) const {
    std::size_t front = 0;
    for (std::size_t i = 0; i < runCount_(); ++i) {
        const auto run = run_(i);
        const std::size_t most = std::min(run.size(), points.size() - front);
        const std::size_t found = sameFront(run.data(), points.data() + front, most);
        front += found;
        if (found < run.size()) break;
    }
    return front;
}

std::size_t SharedPoints::commonBack_(std::span<const Vec3> points) const {
    std::size_t back = 0;
    for (std::size_t i = runCount_(); i > 0; --i) {
        const auto run = run_(i - 1);
        const std::size_t most = std::min(run.size(), points.size() - back);
        const Vec3* const end = points.data() + (points.size() - back);
        const std::size_t found = sameBack(run.data() + (run.size() - most), end - most, most);
        back += found;
        if (found < run.size()) break;
    }
    return back;
}

void SharedPoints::append_(std::span<const Vec3> points) {
    if (points.empty()) return;
    std::get<Pieces>(held_).push_back(
        {std::make_shared<const Block>(points.begin(), points.end()), 0, points.size()});
    size_ += points.size();
}

void SharedPoints::appendFrom_(const SharedPoints& other, std::size_t first, std::size_t count) {
    const auto* const pieces = std::get_if<Pieces>(&other.held_);
    if (!pieces) {
        append_(std::span(std::get<Few>(other.held_)).subspan(first, count));
        return;
    }
    for (const Piece& piece : *pieces) {
        if (count == 0) break;
        if (first >= piece.count) {
            first -= piece.count;
            continue;
        }
        const std::size_t some = std::min(piece.count - first, count);
        std::get<Pieces>(held_).push_back({piece.block, piece.first + first, some});
        size_ += some;
        count -= some;
        first = 0;
    }
}

std::vector<Vec3> SharedPoints::points() const {
    std::vector<Vec3> points;
    points.reserve(size_);
    copyTo(points, 0, size_);
    return points;
}

void SharedPoints::copyTo(std::vector<Vec3>& points, std::size_t first, std::size_t count) const {
    for (std::size_t i = 0; i < runCount_() && count > 0; ++i) {
        const auto run = run_(i);
        const std::size_t from = std::min(first, run.size());
        const auto some = run.subspan(from, std::min(count, run.size() - from));
        points.insert(points.end(), some.begin(), some.end());
        first -= from;
        count -= some.size();
    }
}

SharedPoints::Common SharedPoints::commonWith(const SharedPoints& other) const {
    Common common;
    const std::size_t most = std::min(size_, other.size_);
    std::size_t mine = 0;
    std::size_t theirs = 0;
    std::size_t inMine = 0;
    std::size_t inTheirs = 0;
    while (common.front < most) {
        const auto a = run_(mine).subspan(inMine);
        const auto b = other.run_(theirs).subspan(inTheirs);
        const std::size_t some = std::min(a.size(), b.size());
        const std::size_t found = a.data() == b.data() ? some : sameFront(a.data(), b.data(), some);
        common.front += found;
        if (found < some) break;
        inMine += some;
        inTheirs += some;
        if (some == a.size()) ++mine, inMine = 0;
        if (some == b.size()) ++theirs, inTheirs = 0;
    }
    mine = runCount_();
    theirs = other.runCount_();
    inMine = inTheirs = 0;
    while (common.back < most - common.front) {
        auto a = run_(mine - 1);
        auto b = other.run_(theirs - 1);
        a = a.first(a.size() - inMine);
        b = b.first(b.size() - inTheirs);
        const std::size_t some = std::min({a.size(), b.size(), most - common.front - common.back});
        const Vec3* const from = a.data() + (a.size() - some);
        const Vec3* const to = b.data() + (b.size() - some);
        const std::size_t found = from == to ? some : sameBack(from, to, some);
        common.back += found;
        if (found < some) break;
        inMine += some;
        inTheirs += some;
        if (some == a.size()) --mine, inMine = 0;
        if (some == b.size()) --theirs, inTheirs = 0;
    }
    return common;
}

std::size_t SharedPoints::bytesBeyond(const SharedPoints* other) const {
    const auto* const pieces = std::get_if<Pieces>(&held_);
    if (!pieces) return 0;
    const auto* const theirs = other ? std::get_if<Pieces>(&other->held_) : nullptr;
    std::size_t count = 0;
    for (const Piece& piece : *pieces) {
        const bool shared = theirs && std::ranges::any_of(*theirs, [&](const Piece& each) {
                                return each.block == piece.block;
                            });
        if (!shared) count += piece.count;
    }
    return count * sizeof(Vec3);
}

bool SharedPoints::operator==(const SharedPoints& other) const {
    return size_ == other.size_ && commonWith(other).front == size_;
}

}  // namespace OverlayEditor
