#pragma once

#include <algorithm>
#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace OverlayEditor {

/// Finds shapes by name: the numbers of those that have, or had, a name. To forget one takes nothing, as who
/// asks sees whether it still has the name.
class ShapeNames {
  public:
    void add(std::string_view name, std::uint64_t number) { entries_.push_back({hashOf(name), number}); }
    void clear() {
        entries_.clear();
        sorted_ = 0;
    }
    std::size_t size() const { return entries_.size(); }

    /// The lowest number that is accepted of those that were added with the name, 0 for none.
    template <std::predicate<std::uint64_t> Accepts>
    std::uint64_t find(std::string_view name, Accepts accepts) {
        if (entries_.size() - sorted_ > kFew + sorted_ / kFewOf) sort_();
        const std::size_t hash = hashOf(name);
        const auto behind = entries_.begin() + static_cast<std::ptrdiff_t>(sorted_);
        std::uint64_t found = 0;
        for (auto at = std::lower_bound(entries_.begin(), behind, Entry{hash, 0});
             at != behind && at->hash == hash && found == 0; ++at)
            if (accepts(at->number)) found = at->number;
        for (auto at = behind; at != entries_.end(); ++at)
            if (at->hash == hash && (found == 0 || at->number < found) && accepts(at->number))
                found = at->number;
        return found;
    }
    /// Forgets those of which `has(number, hash)` does not say that it has a name with that hash.
    template <typename Has>
    void keepOnly(Has has) {
        sort_();
        std::erase_if(entries_, [&](const Entry& entry) { return !has(entry.number, entry.hash); });
        sorted_ = entries_.size();
    }
    static std::size_t hashOf(std::string_view name) { return std::hash<std::string_view>()(name); }

  private:
    struct Entry {
        std::size_t hash = 0;
        std::uint64_t number = 0;
        auto operator<=>(const Entry&) const = default;
    };
    /// So many that came last are looked through one by one.
    static constexpr std::size_t kFew = 64;
    static constexpr std::size_t kFewOf = 16;

    void sort_() {
        const auto behind = entries_.begin() + static_cast<std::ptrdiff_t>(sorted_);
        std::sort(behind, entries_.end());
        std::inplace_merge(entries_.begin(), behind, entries_.end());
        entries_.erase(std::unique(entries_.begin(), entries_.end()), entries_.end());
        sorted_ = entries_.size();
    }

    std::vector<Entry> entries_;
    /// The first so many are in their order.
    std::size_t sorted_ = 0;
};

}  // namespace OverlayEditor
