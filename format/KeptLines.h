#pragma once

#include <cstdint>
#include <functional>
#include <ios>
#include <span>
#include <string>
#include <vector>

#include "common/Vec3.h"

namespace halCore::ZEL {

class TextWriter;

/// The lines of the long list of points that was written last, for when it is written again with a few points
/// changed: a line of 100,000 points is, at every move of the mouse that drags one of them. What is written
/// is the same to the byte. Nothing is kept before a list comes a second time.
class KeptLines {
  public:
    /// Writes each position's line.
    using Format = std::function<void(TextWriter& writer, std::span<const Vec3> positions)>;

    /// Shorter lists are written at once; longer ones would take too much memory.
    static constexpr std::size_t kFewest = 1000;
    static constexpr std::size_t kMost = 300'000;

    /// \param form all but the positions that the lines depend on
    void write(TextWriter& writer, const std::string& form, std::span<const Vec3> positions,
               const Format& format);

    /// What a stream's writers use; not owned. Null for most streams.
    static KeptLines* of(std::ios_base& stream);
    void attachTo(std::ios_base& stream);

  private:
    bool isLikeLast_(const std::string& form, std::span<const Vec3> positions) const;
    void update_(TextWriter& writer, std::span<const Vec3> positions, const Format& format);
    void forget_();

    std::string form_;
    std::size_t count_ = 0;
    Vec3 first_;
    Vec3 last_;
    std::vector<Vec3> positions_;
    /// Their lines, and where each ends.
    std::string text_;
    std::vector<std::uint32_t> ends_;
};

}  // namespace halCore::ZEL
