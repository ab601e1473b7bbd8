#pragma once

#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

/// Tables of tests as texts: many cases in few lines.
namespace test {

/// The parts of a text between separators.
inline std::vector<std::string> split(std::string text, std::string_view separator) {
    std::vector<std::string> parts;
    for (std::size_t end; (end = text.find(separator)) != std::string::npos;) {
        parts.push_back(text.substr(0, end));
        text.erase(0, end + separator.size());
    }
    parts.push_back(text);
    return parts;
}

/// The rows of a table, a line each but for comments; " | " parts the cells, and there are `count` of them.
inline std::vector<std::vector<std::string>> rows(std::string_view table, std::size_t count) {
    std::vector<std::vector<std::string>> result;
    for (std::string line : split(std::string(table), "\n")) {
        if (line.empty() || line.starts_with("// ")) continue;
        if (line.ends_with(" |")) line += ' ';
        result.push_back(split(line, " | "));
        result.back().resize(std::max(result.back().size(), count));
    }
    return result;
}

/// Lines, each ended by a ";" or, the last one, by the text's end.
inline std::string lines(std::string_view body) {
    std::string text(body);
    if (!text.empty()) text += ';';
    std::replace(text.begin(), text.end(), ';', '\n');
    return text;
}

}  // namespace test
