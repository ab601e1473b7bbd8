#include "cli/Columns.h"

#include <algorithm>

namespace cli {

std::string counted(std::size_t count, std::string_view what) {
    return std::to_string(count).append(" ").append(what).append(count == 1 ? "" : "s");
}

std::size_t columns(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

std::string padded(std::string_view text, std::size_t width) {
    const std::size_t used = columns(text);
    return std::string(text).append(used < width ? width - used : 0, ' ');
}

std::string paddedLeft(std::string_view text, std::size_t width) {
    const std::size_t used = columns(text);
    return std::string(used < width ? width - used : 0, ' ').append(text);
}

}  // namespace cli
