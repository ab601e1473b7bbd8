#pragma once

#include <cstdint>

namespace OverlayEditor {

/// The bytes of a colour that is packed with red in the top byte and alpha in the lowest.
struct ColorBytes {
    constexpr explicit ColorBytes(std::uint32_t rgba)
        : r(static_cast<unsigned char>(rgba >> 24U)),
          g(static_cast<unsigned char>(rgba >> 16U)),
          b(static_cast<unsigned char>(rgba >> 8U)),
          a(static_cast<unsigned char>(rgba)) {}
    constexpr ColorBytes(unsigned char red, unsigned char green, unsigned char blue, unsigned char alpha)
        : r(red), g(green), b(blue), a(alpha) {}

    constexpr std::uint32_t packed() const {
        return std::uint32_t{r} << 24U | std::uint32_t{g} << 16U | std::uint32_t{b} << 8U | a;
    }

    unsigned char r, g, b, a;
};

}  // namespace OverlayEditor
