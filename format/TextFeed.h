#pragma once

#include <cstddef>
#include <string_view>

#include "format/BlockReader.h"

namespace halCore::ZEL {

/// Hands a text in memory to a reader, a part at a time: whole lines, without a byte order mark before them.
class TextFeed {
  public:
    /// Both are only referred to.
    TextFeed(BlockReader& reader, std::string_view text);

    /// Hands on about so many bytes, up to the end of a line. \return whether that was all
    bool goOn(std::size_t bytes);
    /// Bytes.
    std::size_t done() const { return done_; }

  private:
    BlockReader& reader_;
    std::string_view text_;
    std::size_t done_ = 0;
};

}  // namespace halCore::ZEL
