#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace halCore::ZEL {

/// A colour of the overlay format. Opaque red unless told otherwise, as the format's default is.
class Color {
  public:
    constexpr Color() = default;
    constexpr Color(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t alpha)
        : red_(red), green_(green), blue_(blue), alpha_(alpha) {}

    /// From the value 0xAABBGGRR.
    static constexpr Color fromAbgr(std::uint32_t abgr) {
        return Color(static_cast<std::uint8_t>(abgr), static_cast<std::uint8_t>(abgr >> 8),
                     static_cast<std::uint8_t>(abgr >> 16), static_cast<std::uint8_t>(abgr >> 24));
    }

    /// Reads "0x" and hexadecimal digits that fit 32 bits (0xAABBGGRR); nothing for any other text.
    static std::optional<Color> parse(std::string_view text);

    constexpr std::uint8_t red() const { return red_; }
    constexpr std::uint8_t green() const { return green_; }
    constexpr std::uint8_t blue() const { return blue_; }
    constexpr std::uint8_t alpha() const { return alpha_; }
    constexpr std::uint32_t abgr() const {
        return static_cast<std::uint32_t>(alpha_) << 24 | static_cast<std::uint32_t>(blue_) << 16 |
               static_cast<std::uint32_t>(green_) << 8 | static_cast<std::uint32_t>(red_);
    }

    /// "0x" and eight hexadecimal digits: alpha, blue, green, red.
    std::string serialize() const;

    friend constexpr bool operator==(const Color&, const Color&) = default;

  private:
    std::uint8_t red_ = 255;
    std::uint8_t green_ = 0;
    std::uint8_t blue_ = 0;
    std::uint8_t alpha_ = 255;
};

}  // namespace halCore::ZEL
