#include "common/Printable.h"

#include <algorithm>
#include <cstdint>

namespace UTILS {
namespace {

/// A UTF-8 character at the beginning of a text; no bytes when there is none.
struct Character {
    std::size_t bytes = 0;
    char32_t code = 0;
};

Character firstOf(std::string_view text) {
    const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80) return {1, lead};
    const std::size_t bytes = lead >= 0xf0 && lead < 0xf5   ? 4
                              : lead >= 0xe0 && lead < 0xf0 ? 3
                              : lead >= 0xc2 && lead < 0xe0 ? 2
                                                            : 0;
    if (bytes == 0 || text.size() < bytes) return {};
    char32_t code = lead & (0x7fU >> bytes);
    for (std::size_t i = 1; i < bytes; ++i) {
        if ((byte(i) & 0xc0U) != 0x80U) return {};
        code = code << 6U | (byte(i) & 0x3fU);
    }
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xd800 && code < 0xe000;
    return code < kLeast[bytes] || code > 0x10ffff || surrogate ? Character{} : Character{bytes, code};
}

/// Whether a character does something instead of being seen: controls, line separators, marks of direction.
bool steers(char32_t code) {
    const auto within = [code](char32_t first, char32_t last) { return code >= first && code <= last; };
    return code < 0x20 || within(0x7f, 0x9f) || code == 0x61c || within(0x200e, 0x200f) ||
           within(0x2028, 0x202e) || within(0x2066, 0x2069);
}

void appendEscape(std::string& result, std::string_view mark, char32_t code, int digits) {
    result += mark;
    for (int i = digits - 1; i >= 0; --i) result += "0123456789abcdef"[code >> (4 * i) & 0xfU];
}

}  // namespace

std::string printable(std::string_view text, std::size_t most) {
    std::string result;
    result.reserve(std::min(text.size(), most));
    std::size_t at = 0;
    while (at < text.size()) {
        const Character next = firstOf(text.substr(at));
        if (at + std::max<std::size_t>(next.bytes, 1) > most) break;
        if (next.bytes == 0)
            appendEscape(result, "\\x", static_cast<unsigned char>(text[at]), 2);
        else if (!steers(next.code))
            result += text.substr(at, next.bytes);
        else if (next.code < 0x80)
            appendEscape(result, "\\x", next.code, 2);
        else
            appendEscape(result, "\\u", next.code, 4);
        at += std::max<std::size_t>(next.bytes, 1);
    }
    if (at < text.size())
        result.append("... (").append(std::to_string(text.size() - at)).append(" bytes more)");
    return result;
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t bytes = firstOf(text).bytes;
        if (bytes == 0) return false;
        text.remove_prefix(bytes);
    }
    return true;
}

}  // namespace UTILS
