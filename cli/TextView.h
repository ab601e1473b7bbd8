#pragma once

#include <streambuf>
#include <string_view>

namespace cli {

/// A text in memory to be read as a stream, without a copy of it.
class TextView : public std::streambuf {
  public:
    explicit TextView(std::string_view text) {
        // Streams only read from here.
        char* const begin = const_cast<char*>(text.data());
        setg(begin, begin, begin + text.size());
    }
};

}  // namespace cli
