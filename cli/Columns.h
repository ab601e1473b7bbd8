#pragma once

#include <string>
#include <string_view>

namespace cli {

/// "1 shape", "2 shapes".
std::string counted(std::size_t count, std::string_view what);

/// How many columns a UTF-8 text takes, one for each character.
std::size_t columns(std::string_view text);

/// The text filled up with blanks to a number of columns, at the right or at the left.
std::string padded(std::string_view text, std::size_t width);
std::string paddedLeft(std::string_view text, std::size_t width);

}  // namespace cli
