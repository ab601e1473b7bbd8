#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace OverlayEditor {

/// Values by slot, 0 to `count` - 1, of which few are set: only those take memory.
template <typename Value, std::size_t count>
class Slots {
    static_assert(count < 32);

  public:
    Slots() = default;
    Slots(const Slots& other) : set_(other.set_), values_(other.copy_(other.used_())) {}
    Slots(Slots&& other) noexcept : set_(std::exchange(other.set_, 0)), values_(std::move(other.values_)) {}
    Slots& operator=(Slots other) noexcept {
        std::swap(set_, other.set_);
        std::swap(values_, other.values_);
        return *this;
    }
    ~Slots() = default;

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
        auto values = copy_(used_() + 1);
        Value* const place = values.get() + before_(slot);
        std::copy_backward(place, values.get() + used_(), values.get() + used_() + 1);
        *place = value;
        values_ = std::move(values);
        set_ |= bit_(slot);
    }
    void reset(std::size_t slot) {
        if (!(set_ & bit_(slot))) return;
        Value* const place = values_.get() + before_(slot);
        std::copy(place + 1, values_.get() + used_(), place);
        set_ &= ~bit_(slot);
    }
    std::size_t bytes() const { return used_() * sizeof(Value); }
    bool operator==(const Slots& other) const {
        return set_ == other.set_ && std::equal(values_.get(), values_.get() + used_(), other.values_.get());
    }

  private:
    static std::uint32_t bit_(std::size_t slot) { return 1U << slot; }
    std::size_t used_() const { return static_cast<std::size_t>(std::popcount(set_)); }
    /// How many of the slots before it are set.
    std::size_t before_(std::size_t slot) const {
        return static_cast<std::size_t>(std::popcount(set_ & (bit_(slot) - 1)));
    }
    /// The values, with room for so many.
    std::unique_ptr<Value[]> copy_(std::size_t room) const {
        if (room == 0) return nullptr;
        auto values = std::make_unique<Value[]>(room);
        std::copy_n(values_.get(), std::min(used_(), room), values.get());
        return values;
    }

    std::uint32_t set_ = 0;
    /// Those that are set, in the order of their slots.
    std::unique_ptr<Value[]> values_;
};

}  // namespace OverlayEditor
