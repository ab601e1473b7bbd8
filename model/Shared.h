#pragma once

#include <memory>
#include <utility>

namespace OverlayEditor {

/// A value that copies share until one of them is changed: a shape, its copies and what is known of it by the
/// steps hold the same one. Equal when the values are.
template <typename Value>
class Shared {
  public:
    /// All that are as they begin share one value.
    Shared() : value_(initial_()) {}
    explicit Shared(Value value) : value_(std::make_shared<Value>(std::move(value))) {}
    // Moving copies, so that none is ever without a value.
    Shared(const Shared&) = default;
    Shared& operator=(const Shared&) = default;

    const Value& operator*() const { return *value_; }
    const Value* operator->() const { return value_.get(); }
    /// The value, nobody else's from now on; until this is copied next.
    Value& change() {
        if (value_.use_count() > 1) value_ = std::make_shared<Value>(*value_);
        return *value_;
    }
    /// Whether both hold one value, not only equal ones.
    bool isOneWith(const Shared& other) const { return value_ == other.value_; }
    bool operator==(const Shared& other) const { return *value_ == *other.value_; }

  private:
    static const std::shared_ptr<Value>& initial_() {
        static const auto initial = std::make_shared<Value>();
        return initial;
    }

    std::shared_ptr<Value> value_;
};

}  // namespace OverlayEditor
