#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace halCore::ZEL {

struct ColorName {
    std::string_view name;
    /// "0x" and eight digits: alpha, blue, green, red.
    std::string_view value;
};

/// The names that every file may use for a colour, in lower case. A name that is not among them means red.
inline constexpr std::array<ColorName, 16> kColorNames{{
    {"color1", "0xffffff00"},
    {"cyan", "0xffffff00"},
    {"color2", "0xff0000ff"},
    {"red", "0xff0000ff"},
    {"color3", "0xff00ff00"},
    {"green", "0xff00ff00"},
    {"color4", "0xffff0000"},
    {"blue", "0xffff0000"},
    {"color5", "0xff00ffff"},
    {"yellow", "0xff00ffff"},
    {"color6", "0xff00a5ff"},
    {"orange", "0xff00a5ff"},
    {"color7", "0xffffffff"},
    {"white", "0xffffffff"},
    {"black", "0xff000000"},
    {"magenta", "0xffc000c0"},
}};

constexpr bool isColorName(std::string_view name) {
    return std::any_of(kColorNames.begin(), kColorNames.end(),
                       [name](const ColorName& color) { return color.name == name; });
}

}  // namespace halCore::ZEL
