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
        : abgr_(static_cast<std::uint32_t>(alpha) << 24 | static_cast<std::uint32_t>(blue) << 16 |
                static_cast<std::uint32_t>(green) << 8 | red) {}

    /// From the value 0xAABBGGRR.
    static constexpr Color fromAbgr(std::uint32_t abgr) {
        Color color;
        color.abgr_ = abgr;
        return color;
    }

    /// Reads "0x" and hexadecimal digits that fit 32 bits (0xAABBGGRR); nothing for any other text.
    static std::optional<Color> parse(std::string_view text);

    constexpr std::uint8_t red() const { return static_cast<std::uint8_t>(abgr_); }
    constexpr std::uint8_t green() const { return static_cast<std::uint8_t>(abgr_ >> 8); }
    constexpr std::uint8_t blue() const { return static_cast<std::uint8_t>(abgr_ >> 16); }
    constexpr std::uint8_t alpha() const { return static_cast<std::uint8_t>(abgr_ >> 24); }
    constexpr std::uint32_t abgr() const { return abgr_; }

    /// "0x" and eight hexadecimal digits: alpha, blue, green, red.
    std::string serialize() const;

    friend constexpr bool operator==(const Color&, const Color&) = default;

  private:
    /// In one piece, as it is copied more often than taken apart.
    std::uint32_t abgr_ = 0xff0000ff;
};

}  // namespace halCore::ZEL
