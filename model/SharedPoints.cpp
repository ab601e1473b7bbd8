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
    if (like && points.size() > kFewPoints) {
        const std::size_t front = like->commonFront_(points);
        const std::size_t back = like->commonBack_(points.subspan(front));
        const std::size_t both = std::min(like->size() - front, back);
        appendFrom_(*like, 0, front);
        append_(points.subspan(front, points.size() - front - both));
        appendFrom_(*like, like->size() - both, both);
        if (pieces_.size() <= kMostPieces) return;
        pieces_.clear();
        size_ = 0;
    }
    append_(points);
}

std::size_t SharedPoints::commonFront_(std::span<const Vec3> points) const {
    std::size_t front = 0;
    for (const Piece& piece : pieces_) {
        const std::size_t most = std::min(piece.count, points.size() - front);
        const std::size_t found = sameFront(piece.begin(), points.data() + front, most);
        front += found;
        if (found < piece.count) break;
    }
    return front;
}

std::size_t SharedPoints::commonBack_(std::span<const Vec3> points) const {
    std::size_t back = 0;
    for (auto piece = pieces_.rbegin(); piece != pieces_.rend(); ++piece) {
        const std::size_t most = std::min(piece->count, points.size() - back);
        const Vec3* const end = points.data() + (points.size() - back);
        const std::size_t found = sameBack(piece->begin() + (piece->count - most), end - most, most);
        back += found;
        if (found < piece->count) break;
    }
    return back;
}

void SharedPoints::append_(std::span<const Vec3> points) {
    if (points.empty()) return;
    pieces_.push_back({std::make_shared<const Block>(points.begin(), points.end()), 0, points.size()});
    size_ += points.size();
}

void SharedPoints::appendFrom_(const SharedPoints& other, std::size_t first, std::size_t count) {
    for (const Piece& piece : other.pieces_) {
        if (count == 0) break;
        if (first >= piece.count) {
            first -= piece.count;
            continue;
        }
        const std::size_t some = std::min(piece.count - first, count);
        pieces_.push_back({piece.block, piece.first + first, some});
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
    SharedPoints some;
    some.appendFrom_(*this, first, count);
    for (const Piece& piece : some.pieces_)
        points.insert(points.end(), piece.begin(), piece.begin() + piece.count);
}

SharedPoints::Common SharedPoints::commonWith(const SharedPoints& other) const {
    Common common;
    const std::size_t most = std::min(size_, other.size_);
    std::size_t mine = 0;
    std::size_t theirs = 0;
    std::size_t inMine = 0;
    std::size_t inTheirs = 0;
    while (common.front < most) {
        const Piece& a = pieces_[mine];
        const Piece& b = other.pieces_[theirs];
        const std::size_t some = std::min(a.count - inMine, b.count - inTheirs);
        const Vec3* const from = a.begin() + inMine;
        const Vec3* const to = b.begin() + inTheirs;
        const std::size_t found = from == to ? some : sameFront(from, to, some);
        common.front += found;
        if (found < some) break;
        inMine += some;
        inTheirs += some;
        if (inMine == a.count) ++mine, inMine = 0;
        if (inTheirs == b.count) ++theirs, inTheirs = 0;
    }
    mine = pieces_.size();
    theirs = other.pieces_.size();
    inMine = inTheirs = 0;
    while (common.back < most - common.front) {
        const Piece& a = pieces_[mine - 1];
        const Piece& b = other.pieces_[theirs - 1];
        const std::size_t some =
            std::min({a.count - inMine, b.count - inTheirs, most - common.front - common.back});
        const Vec3* const from = a.begin() + (a.count - inMine - some);
        const Vec3* const to = b.begin() + (b.count - inTheirs - some);
        const std::size_t found = from == to ? some : sameBack(from, to, some);
        common.back += found;
        if (found < some) break;
        inMine += some;
        inTheirs += some;
        if (inMine == a.count) --mine, inMine = 0;
        if (inTheirs == b.count) --theirs, inTheirs = 0;
    }
    return common;
}

std::size_t SharedPoints::bytesBeyond(const SharedPoints* other) const {
    std::size_t count = 0;
    for (const Piece& piece : pieces_) {
        const bool shared = other && std::ranges::any_of(other->pieces_, [&](const Piece& theirs) {
                                return theirs.block == piece.block;
                            });
        if (!shared) count += piece.count;
    }
    return count * sizeof(Vec3);
}

bool SharedPoints::operator==(const SharedPoints& other) const {
    return size_ == other.size_ && commonWith(other).front == size_;
}

}  // namespace OverlayEditor
