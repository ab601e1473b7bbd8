#pragma once

#include <iosfwd>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "format/ParseReport.h"
#include "format/ZelShape.h"

namespace halCore {
class UnitsRegistry;
}

namespace halCore::ZEL {

class MessageSink;
class ParsedShape;
struct ColorName;

/// Reads overlay text. Reading never stops at a bad line: the line or the block is dropped, with a
/// message. Nothing throws.
///
/// A parser keeps nothing between two calls but its colours and its registry; one thread at a time may
/// use it.
class Parser {
  public:
    using Shapes = std::vector<std::shared_ptr<ZelShape>>;

    /// Knows the format's named colours.
    Parser();

    /// Adds or replaces a named colour, in any case. `value` is "0x" and hexadecimal digits, 0xAABBGGRR.
    void addOverwriteColor(std::string_view name, std::string_view value);

    /// The units that units lines may name; not owned, null for the predefined ones.
    void setUnitsRegistry(const UnitsRegistry* registry) { registry_ = registry; }

    /// Appends one shape for each valid block, in the text's order. The stream is read in large blocks, up
    /// to its end. Messages go to the log.
    void parse(std::istream& in, Shapes& shapes) const;
    /// The same, but messages and counts are added to `report` and nothing is logged.
    void parse(std::istream& in, Shapes& shapes, ParseReport& report) const;

    /// The same from memory, without a copy of the text.
    void parse(std::string_view text, Shapes& shapes) const;
    void parse(std::string_view text, Shapes& shapes, ParseReport& report) const;

  private:
    friend class BlockReader;
    using Colors = std::map<std::string, std::string, std::less<>>;

    void initZelColors_();
    /// The value of a colour's name in lower case; red for one that nobody knows.
    std::string_view colorNamed_(std::string_view name) const;
    /// `feed` hands the text to the reader.
    template <typename Feed>
    void parse_(Shapes& shapes, ParseReport* report, Feed feed) const;
    /// The shape of a finished record; null, with a message, when it makes none.
    std::shared_ptr<ZelShape> getShape_(ParsedShape& record, const UnitsRegistry& registry,
                                        const MessageSink& messages) const;

    /// The format's own, which are not copied: hosts make a parser for every move of the mouse.
    std::span<const ColorName> zelColors_;
    /// Those that were added.
    Colors colors_;
    const UnitsRegistry* registry_ = nullptr;
};

}  // namespace halCore::ZEL
