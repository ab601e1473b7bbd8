#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace UTILS {

/// The longest message that is shown whole, in bytes.
inline constexpr std::size_t kLongestShown = 2000;

/// The text as a terminal or a log may show it: nothing in it steers the terminal, begins a new line or turns
/// the direction of writing. Control characters (C0, DEL, C1) and those of direction become "\xNN" or
/// "\uNNNN", bytes that are no UTF-8 "\xNN"; everything else stays. \param most what is longer than this many
/// bytes is cut, not within a character, and ends in "... (N bytes more)"
std::string printable(std::string_view text, std::size_t most = std::string_view::npos);

/// Whether all of it is UTF-8.
bool isUtf8(std::string_view text);

}  // namespace UTILS
