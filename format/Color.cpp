#include "format/Color.h"

#include <charconv>
#include <system_error>

#include "format/EightBytes.h"

namespace halCore::ZEL {

std::optional<Color> Color::parse(std::string_view text) {
    if (!text.starts_with("0x")) return std::nullopt;
    if (text.size() == 10)
        if (const auto abgr = hexadecimalOf(loadEight(text.data() + 2))) return fromAbgr(*abgr);
    std::uint32_t abgr = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + 2, end, abgr, 16);
    if (error != std::errc() || stop != end) return std::nullopt;
    return fromAbgr(abgr);
}

std::string Color::serialize() const {
    constexpr char digits[] = "0123456789abcdef";
    std::string text = "0x00000000";
    std::uint32_t rest = abgr();
    for (std::size_t i = text.size(); i-- > 2; rest >>= 4) text[i] = digits[rest & 0xf];
    return text;
}

}  // namespace halCore::ZEL
