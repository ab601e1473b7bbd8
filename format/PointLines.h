#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <span>

#include "common/Vec3.h"

namespace halCore::ZEL {

/// Reads lines of points in the plainest way of writing, one behind the other: "lla -17.505557 132.25 500".
/// The three numbers of a line are read at the same time by vector instructions, where the processor has
/// them. To the last bit they are what `scanPlainPoint` reads.
class PointLines {
  public:
    /// What becomes of the numbers.
    struct Use {
        /// The first two are multiplied by it.
        double factor = 1.0;
        /// A line with a number that is larger, in either direction, is left to others.
        double largestX = std::numeric_limits<double>::infinity();
        double largestY = std::numeric_limits<double>::infinity();
    };

    /// Reads lines from `p` on that begin with the same keyword as the first and a blank, and moves `p`
    /// behind those that were read: none of another form, none near `end`, and a limited number at a time.
    /// \param letters of the keyword, 2 or 3 \return the points, valid until the next call
    std::span<const Vec3> read(const char*& p, const char* end, std::size_t letters, const Use& use);

    /// Whether the processor has the instructions; where it has not, no line is read.
    static bool canRead();

  private:
    static constexpr std::size_t kMost = 64;

    std::size_t readVectors_(const char*& p, const char* end, std::size_t letters, const Use& use);

    /// One more than are read: a point is stored as four numbers.
    std::array<Vec3, kMost + 1> points_;
};

}  // namespace halCore::ZEL
