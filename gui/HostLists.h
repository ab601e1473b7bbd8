#pragma once

#include <cstdint>

namespace OverlayEditor {

/// List items carry platform ids where other items carry pointers.
inline void* itemData(std::uint64_t id) {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(id));
}
inline std::uint64_t idOfItem(const void* data) {
    return reinterpret_cast<std::uintptr_t>(data);
}

}  // namespace OverlayEditor
