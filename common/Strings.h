#pragma once

#include <span>
#include <string>
#include <string_view>

namespace UTILS {

/// White space is blank, tab, line feed, carriage return, vertical tab and form feed, in any locale.
constexpr bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// The text without white space at both ends; a view into the argument.
constexpr std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

/// ASCII letters in lower (upper) case; every other byte, UTF-8 included, unchanged.
std::string lowerCase(std::string_view text);
std::string upperCase(std::string_view text);

/// True when both texts are the same but for the case of ASCII letters.
bool equalsIgnoringCase(std::string_view a, std::string_view b);

/// True for "true", "t", "yes", "y", "on" and "1" in any case, blanks around them allowed.
bool stringIsTrueToken(std::string_view text);

/// The text as a message quotes it, in one line: a long one is cut after 40 bytes or less, not within a UTF-8
/// character, and ends in "...".
std::string excerpt(std::string_view text);

/// "a, b, c", and how many more when there are many.
inline constexpr std::size_t kMostListed = 20;
std::string listed(std::span<const std::string> names, std::size_t most = kMostListed);

}  // namespace UTILS
