#include "globe/FullTiles.h"

#include <algorithm>

namespace sandbox {

namespace {

/// Rounding leaves a pixel a step beside where it should be, each channel by itself.
bool isNear(std::uint32_t pixel, std::uint32_t wanted) {
    // Two channels at a time, each in two bytes: from one less to two more.
    const auto areNear = [](std::uint32_t two, std::uint32_t wantedTwo) {
        return ((two + 0x01010101 - wantedTwo) & 0xfffcfffc) == 0x01000100;
    };
    return areNear(pixel & 0x00ff00ff, wanted & 0x00ff00ff) &&
           areNear(pixel >> 8 & 0x00ff00ff, wanted >> 8 & 0x00ff00ff);
}

}  // namespace

bool FullTiles::enter(int left, int right, int y, std::uint32_t color,
                      const std::vector<std::uint32_t>& pixels) {
    // A line covers a thirtieth of a tile.
    constexpr int kOften = 64;
    bool areFull = true;
    for (int column = left / kSide; column <= right / kSide; ++column) {
        Tile& tile = at(column, y / kSide);
        if (tile.color != color) tile = {.color = color};
        if (!tile.full && ++tile.entered == kOften) {
            tile.entered = 0;
            tile.full = isFull(column, y / kSide, color, pixels);
        }
        areFull = areFull && tile.full;
    }
    return areFull;
}

bool FullTiles::isFull(int column, int row, std::uint32_t color,
                       const std::vector<std::uint32_t>& pixels) const {
    const int right = std::min((column + 1) * kSide, picture_.width());
    const int top = std::min((row + 1) * kSide, picture_.height());
    for (int y = row * kSide; y < top; ++y) {
        const auto line = pixels.begin() + static_cast<std::ptrdiff_t>(y) * picture_.width();
        if (!std::all_of(line + column * kSide, line + right,
                         [color](std::uint32_t pixel) { return isNear(pixel, color); }))
            return false;
    }
    return true;
}

void FullTiles::forget(const QRect& part) {
    for (int row = part.top() / kSide; row <= part.bottom() / kSide; ++row)
        for (int column = part.left() / kSide; column <= part.right() / kSide; ++column) at(column, row) = {};
}

}  // namespace sandbox
