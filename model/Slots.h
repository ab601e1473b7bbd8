#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace OverlayEditor {

/// Values by slot, 0 to `count` - 1, of which few are set: only those take memory.
template <typename Value, std::size_t count>
class Slots {
    static_assert(count < 32);

  public:
    static constexpr std::size_t size() { return count; }
    /// Null for one that is not set; until the next that is set or reset.
    const Value* operator[](std::size_t slot) const {
        return set_ & bit_(slot) ? &values_[before_(slot)] : nullptr;
    }
    Value* operator[](std::size_t slot) { return set_ & bit_(slot) ? &values_[before_(slot)] : nullptr; }
    void set(std::size_t slot, const Value& value) {
        if (Value* const known = (*this)[slot]) {
            *known = value;
            return;
        }
        values_.insert(values_.begin() + before_(slot), value);
        set_ |= bit_(slot);
    }
    void reset(std::size_t slot) {
        if (!(set_ & bit_(slot))) return;
        values_.erase(values_.begin() + before_(slot));
        set_ &= ~bit_(slot);
    }
    std::size_t bytes() const { return values_.capacity() * sizeof(Value); }
    bool operator==(const Slots&) const = default;

  private:
    static std::uint32_t bit_(std::size_t slot) { return 1U << slot; }
    /// How many of the slots before it are set.
    std::uint8_t before_(std::size_t slot) const {
        return static_cast<std::uint8_t>(std::popcount(set_ & (bit_(slot) - 1)));
    }

    std::uint32_t set_ = 0;
    std::vector<Value> values_;
};

}  // namespace OverlayEditor
