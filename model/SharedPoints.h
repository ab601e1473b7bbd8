#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <variant>
#include <vector>

#include "common/Vec3.h"

namespace OverlayEditor {

/// A list of points that never changes, and that shares with the one from which it was made what is the same
/// at both ends: of a line of which one point was moved it holds that point.
class SharedPoints {
  public:
    SharedPoints() = default;
    /// \param like null, or what the points were before
    SharedPoints(std::span<const halCore::Vec3> points, const SharedPoints* like);

    std::size_t size() const { return size_; }
    std::vector<halCore::Vec3> points() const;
    /// Appends some of them to another list.
    void copyTo(std::vector<halCore::Vec3>& points, std::size_t first, std::size_t count) const;
    /// How many points stand at both beginnings, and behind them at both ends.
    struct Common {
        std::size_t front = 0;
        std::size_t back = 0;
    };
    Common commonWith(const SharedPoints& other) const;
    /// Bytes of the points that the other one does not share.
    std::size_t bytesBeyond(const SharedPoints* other) const;
    /// Bit by bit: a point that is nowhere is the same as itself.
    bool operator==(const SharedPoints& other) const;

  private:
    using Block = std::vector<halCore::Vec3>;
    struct Piece {
        std::shared_ptr<const Block> block;
        std::size_t first = 0;
        std::size_t count = 0;
        std::span<const halCore::Vec3> points() const { return {block->data() + first, count}; }
    };
    using Pieces = std::vector<Piece>;
    /// Most shapes have so few, and there may be very many shapes.
    static constexpr std::size_t kFew = 2;
    using Few = std::array<halCore::Vec3, kFew>;

    /// The points are runs, which follow one another.
    std::size_t runCount_() const;
    std::span<const halCore::Vec3> run_(std::size_t index) const;
    /// How many points stand at the beginning of both, or at the end behind the first `from` ones.
    std::size_t commonFront_(std::span<const halCore::Vec3> points) const;
    std::size_t commonBack_(std::span<const halCore::Vec3> points) const;
    void appendFrom_(const SharedPoints& other, std::size_t first, std::size_t count);
    void append_(std::span<const halCore::Vec3> points);

    std::size_t size_ = 0;
    std::variant<Few, Pieces> held_;
};

}  // namespace OverlayEditor
