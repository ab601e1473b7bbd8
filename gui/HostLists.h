#pragma once

#include <cstdint>

#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// List items carry platform ids where other items carry pointers.
inline void* itemData(std::uint64_t id) {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(id));
}
inline std::uint64_t idOfItem(const void* data) {
    return reinterpret_cast<std::uintptr_t>(data);
}

/// So many rows of a list to choose from are seen at once.
inline constexpr std::int32_t kRowsOfSelection = 10;

/// Where there is no choice the item is selected.
inline void selectOnlyItem(PIGUI::PIList& list) {
    if (list.getNumItems() == 1) list.setSelectedItem(0);
}

}  // namespace OverlayEditor
