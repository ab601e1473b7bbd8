#pragma once

#include <cstddef>
#include <string_view>

#include "format/BlockReader.h"
#include "format/MessageSink.h"
#include "format/Parser.h"
#include "format/TextFeed.h"
#include "geo/UnitsRegistry.h"

namespace halCore::ZEL {

/// Reads a text from memory a part at a time; in the end all is as if Parser::parse had read it at once.
class TextReading {
  public:
    /// All three are only referred to.
    TextReading(std::string_view text, Parser::Shapes& shapes, ParseReport& report)
        : messages_(&report), reader_(parser_, units_, shapes, messages_), feed_(reader_, text) {
        units_.registerDefaultUnits();
    }
    TextReading(const TextReading&) = delete;
    TextReading& operator=(const TextReading&) = delete;

    /// Reads whole lines, about so many bytes; not to be called once all is read. \return whether it is
    bool goOn(std::size_t bytes) {
        const bool all = feed_.goOn(bytes);
        if (all) reader_.finish();
        return all;
    }
    /// Bytes.
    std::size_t done() const { return feed_.done(); }

  private:
    Parser parser_;
    UnitsRegistry units_;
    MessageSink messages_;
    BlockReader reader_;
    TextFeed feed_;
};

}  // namespace halCore::ZEL
