#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <vector>

#include "globe/DrawList.h"
#include "globe/SplitPosition.h"

namespace sandbox {

/// Lines that are only drawn, close together in memory. Where a line's detail does not tell them apart, its
/// points are kept as floats about its first one.
class PackedLines {
  public:
    /// \param tolerance of its detail, in metres; it is kept to a two-hundredth of that
    void add(const DrawList::Line& line, double tolerance);
    void shrinkToFit();
    std::size_t size() const { return heads_.size(); }
    /// \return `into`, which holds the line then
    const DrawList::Line& unpack(std::size_t index, DrawList::Line& into) const;

    /// Over lines that are unpacked when they are looked at.
    class Iterator {
      public:
        using iterator_category = std::input_iterator_tag;
        using value_type = DrawList::Line;
        using difference_type = std::ptrdiff_t;
        using pointer = const DrawList::Line*;
        using reference = const DrawList::Line&;

        Iterator(const PackedLines& lines, std::size_t index) : lines_(&lines), index_(index) {}
        const DrawList::Line& operator*() { return lines_->unpack(index_, line_); }
        Iterator& operator++() {
            ++index_;
            return *this;
        }
        bool operator==(const Iterator& other) const { return index_ == other.index_; }

      private:
        const PackedLines* lines_;
        std::size_t index_;
        DrawList::Line line_{};
    };
    Iterator begin() const { return {*this, 0}; }
    Iterator end() const { return {*this, size()}; }

  private:
    struct Head {
        std::uint32_t first;  ///< of its points in `exact_`: all of them, or the first one alone
        std::uint32_t count;
        std::uint32_t next;  ///< of the others, if they are in `rough_`
        bool rough;
        Stroke stroke;
        bool closed : 1, solid : 1, overBodies : 1, leads : 1, trails : 1;
        Rgba color;
        float width;
        double metres;
    };
    std::vector<Head> heads_;
    std::vector<halCore::Ecef> exact_;
    std::vector<FloatTriple> rough_;
};

}  // namespace sandbox
