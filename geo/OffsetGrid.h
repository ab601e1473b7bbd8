#pragma once

#include <cmath>

namespace OverlayEditor {

/// To the nearest tenth of a micrometre: the grid on which offsets from a reference stand. A position loses
/// less than that on its way through radians, so an offset comes back the same however often it goes there.
inline double onOffsetGrid(double meters) {
    constexpr double steps = 1e7;
    return std::nearbyint(meters * steps) / steps;
}

}  // namespace OverlayEditor
