#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "format/ZelShape.h"

namespace halCore::ZEL {

/// The lines of a block with many points that a change leaves alone: they stay, whatever becomes of the
/// others, which are few then.
struct UntouchedPoints {
    /// Lines of the block in their order, with nothing between them in one view but points.
    std::vector<std::string_view> lines;
    /// Which points these are: from, to and the same in the list as it is now.
    struct Run {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::size_t now = 0;
    };
    std::vector<Run> runs;

    /// Finds those that are the same, but for some beside the others: where all points are where they were,
    /// at any place, else at both ends of the list.
    /// \param read what a reader makes of the block \param now what the shape is now
    static UntouchedPoints find(std::string_view block, const ZelShape& read, const ZelShape& now);

    bool empty() const { return lines.empty(); }
    /// The block without them.
    std::string rest(std::string_view block) const;
};

/// A shape without such points, while it lives.
class WithoutPoints {
  public:
    WithoutPoints(ZelShape& shape, const UntouchedPoints& untouched);
    ~WithoutPoints();
    WithoutPoints(const WithoutPoints&) = delete;
    WithoutPoints& operator=(const WithoutPoints&) = delete;

  private:
    std::vector<Vec3>* points_ = nullptr;
    std::vector<Vec3> all_;
};

}  // namespace halCore::ZEL
