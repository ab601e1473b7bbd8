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

constexpr std::uint32_t kAll = ~0U;

std::uint32_t bitsOf(int first, int last) {
    return kAll >> (FullTiles::kSide - 1 - last) & kAll << first;
}

}  // namespace

bool FullTiles::enter(int left, int right, int bottom, int top, std::uint32_t color,
                      const std::vector<std::uint32_t>& pixels) {
    // A line covers a thirtieth of a tile.
    constexpr int kOften = 64;
    const int row = bottom / kSide;
    const std::uint32_t rows = bitsOf(bottom - row * kSide, top - row * kSide);
    bool areFull = true;
    for (int column = left / kSide; column <= right / kSide; ++column) {
        Tile& tile = at(column, row);
        if (tile.color != color) tile = {.color = color};
        if (tile.columns != kAll && ++tile.entered == kOften) {
            tile.entered = 0;
            look(tile, column, row, pixels);
        }
        const std::uint32_t columns =
            bitsOf(std::max(left - column * kSide, 0), std::min(right - column * kSide, kSide - 1));
        areFull = areFull && ((columns & ~tile.columns) == 0 || (rows & ~tile.rows) == 0);
    }
    return areFull;
}

void FullTiles::look(Tile& tile, int column, int row, const std::vector<std::uint32_t>& pixels) const {
    const int width = std::min(kSide, picture_.width() - column * kSide);
    const int height = std::min(kSide, picture_.height() - row * kSide);
    tile.columns = tile.rows = kAll;
    for (int y = 0; y < height; ++y) {
        const auto line =
            pixels.begin() + static_cast<std::ptrdiff_t>(row * kSide + y) * picture_.width() + column * kSide;
        std::uint32_t empty = 0;
        for (int x = 0; x < width; ++x)
            empty |= static_cast<std::uint32_t>(!isNear(line[x], tile.color)) << x;
        tile.columns &= ~empty;
        if (empty != 0) tile.rows &= ~bitsOf(y, y);
    }
}

void FullTiles::forget(const QRect& part) {
    for (int row = part.top() / kSide; row <= part.bottom() / kSide; ++row)
        for (int column = part.left() / kSide; column <= part.right() / kSide; ++column) at(column, row) = {};
}

}  // namespace sandbox
