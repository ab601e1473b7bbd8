#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "model/ShapeState.h"

namespace OverlayEditor {

/// What shapes are, by their numbers and in their order. Side by side in memory: there may be very many.
class ShapeStates {
  public:
    /// Null only in changes, for a shape that goes.
    using Entry = std::pair<std::uint64_t, ShapeStatePtr>;
    using Iterator = std::vector<Entry>::const_iterator;

    Iterator begin() const { return entries_.begin(); }
    Iterator end() const { return entries_.end(); }
    std::size_t size() const { return entries_.size(); }
    bool empty() const { return entries_.empty(); }
    Iterator lower_bound(std::uint64_t number) const;
    /// The end for none.
    Iterator find(std::uint64_t number) const;
    bool contains(std::uint64_t number) const { return find(number) != end(); }
    /// Null for none.
    ShapeStatePtr of(std::uint64_t number) const;

    /// Behind all others.
    void append(std::uint64_t number, ShapeStatePtr state) {
        entries_.emplace_back(number, std::move(state));
    }
    /// Takes over several at once, which takes no longer than a walk over all.
    /// \param changes in the order of the numbers, each of them once
    void change(std::span<const Entry> changes);
    void clear() { entries_.clear(); }

  private:
    std::vector<Entry> entries_;
};

}  // namespace OverlayEditor
