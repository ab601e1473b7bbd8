#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "pi/PIClientFunctions.h"

/// A small map ordered by key, kept as one sorted vector. Zero-filled memory is a valid empty map, so
/// that a host written in C can pass a zeroed block of sizeof(PIFunctionParams_t) bytes.
template <typename Value>
class PIParameterMap {
  public:
    using Entry = std::pair<PIParameterName_t, Value>;

    /// The value of a slot, or null when the slot is absent; valid until the map changes.
    const Value* find(PIParameterName_t name) const {
        const auto at = position(name);
        return at != entries_.end() && at->first == name ? &at->second : nullptr;
    }

    /// The value of a slot; an absent slot is inserted first.
    Value& operator[](PIParameterName_t name) {
        const auto at = entries_.begin() + (position(name) - entries_.cbegin());
        if (at != entries_.end() && at->first == name) return at->second;
        return entries_.emplace(at, name, Value{})->second;
    }

    void erase(PIParameterName_t name) {
        const auto at = position(name);
        if (at != entries_.end() && at->first == name) entries_.erase(at);
    }

    std::size_t size() const { return entries_.size(); }
    auto begin() const { return entries_.begin(); }
    auto end() const { return entries_.end(); }

  private:
    auto position(PIParameterName_t name) const {
        return std::lower_bound(entries_.begin(), entries_.end(), name,
                                [](const Entry& entry, PIParameterName_t key) { return entry.first < key; });
    }

    std::vector<Entry> entries_;
};

/// The parameter record that travels with every dispatched event. The host owns it; the plug-in reads
/// its arguments and writes its results into the same maps.
class PIFunctionParams_t {
  public:
    PIParameterMap<std::string> strings;
    PIParameterMap<std::int32_t> integers;
    PIParameterMap<void*> pointers;

    /// An absent integer argument reads as 0, an absent pointer as null, an absent string as empty.
    std::int32_t integer(PIParameterName_t name) const {
        const auto* value = integers.find(name);
        return value ? *value : 0;
    }
    void* pointer(PIParameterName_t name) const {
        const auto* value = pointers.find(name);
        return value ? *value : nullptr;
    }
    std::string string(PIParameterName_t name) const {
        const auto* value = strings.find(name);
        return value ? *value : std::string();
    }
};
