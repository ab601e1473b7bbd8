#include "gdal/ColorText.h"

#include "common/Strings.h"

namespace exchange {

namespace ZEL = halCore::ZEL;

std::string textOfColor(const ZEL::Color& color) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text = "#";
    for (const std::uint8_t byte : {color.red(), color.green(), color.blue(), color.alpha()}) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

std::optional<ZEL::Color> colorOfText(std::string_view text) {
    text = UTILS::trimmed(text);
    if (!text.starts_with('#')) return ZEL::Color::parse(text);
    if (text.size() != 7 && text.size() != 9) return std::nullopt;
    // The format's own order is the other way round.
    const std::optional<ZEL::Color> read =
        ZEL::Color::parse(std::string("0x").append(text.substr(1)).append(text.size() == 7 ? "ff" : ""));
    if (!read) return std::nullopt;
    return ZEL::Color(read->alpha(), read->blue(), read->green(), read->red());
}

}  // namespace exchange
