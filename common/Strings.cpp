#include "common/Strings.h"

#include <algorithm>
#include <array>

namespace UTILS {
namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

std::string lowerCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

std::string upperCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), upper);
    return result;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

bool stringIsTrueToken(std::string_view text) {
    constexpr std::array<std::string_view, 6> tokens = {"true", "t", "yes", "y", "on", "1"};
    return std::any_of(tokens.begin(), tokens.end(), [word = trimmed(text)](std::string_view token) {
        return equalsIgnoringCase(word, token);
    });
}

std::string excerpt(std::string_view text) {
    constexpr std::size_t longest = 40;
    std::size_t size = std::min(text.size(), longest);
    while (size > 0 && size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) --size;
    std::string quoted(text.substr(0, size));
    std::ranges::replace_if(quoted, isBlank, ' ');
    return size < text.size() ? quoted + "..." : quoted;
}

std::string listed(std::span<const std::string> names, std::size_t most) {
    std::string list;
    for (std::size_t i = 0; i < std::min(names.size(), most); ++i) list += (i ? ", " : "") + names[i];
    if (names.size() > most) list.append(" and ").append(std::to_string(names.size() - most)).append(" more");
    return list;
}

}  // namespace UTILS
