#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "format/ParseReport.h"

namespace halCore::ZEL {

/// A text as it was read, with the place of each of its blocks: what an editor goes back to for all that it
/// has no field for. The bytes are those that were read, whatever line ends and byte order mark they have.
class SourceText {
  public:
    /// \param blocks what a reader told of exactly this text
    /// \param held for each block whether a shape of the editor stands for it; the others are kept as they
    /// are
    /// \param lineEnd empty for the text's own, or that of the one that it is a part of
    SourceText(std::string text, std::vector<BlockSpan> blocks, std::vector<bool> held,
               std::string_view lineEnd = {});
    /// A shape of the editor stands for this one, too.
    void hold(std::size_t block) { held_[block] = true; }

    const std::string& text() const { return text_; }
    std::size_t blockCount() const { return blocks_.size(); }
    const BlockSpan& block(std::size_t index) const { return blocks_[index]; }
    bool isHeld(std::size_t index) const { return held_[index]; }
    /// The block that has a line, from 1; nothing for a line between blocks.
    std::optional<std::size_t> blockOfLine(std::size_t line) const;
    /// The block's own lines, their line ends included.
    std::string_view blockText(std::size_t index) const;
    /// The text's first line end: "\n" or "\r\n".
    std::string_view lineEnd() const { return lineEnd_; }
    static std::string_view lineEndOf(std::string_view text);
    /// Lines that end with "\n", with the text's own line ends.
    std::string withLineEnds(std::string lines) const;

    /// What takes a block's place.
    struct Change {
        std::size_t block = 0;
        /// Whole lines; empty when the block goes, and with it the comment directly above, but for one with
        /// which the text begins: that is about the whole.
        std::string lines;
    };
    /// The text with some blocks changed, and with others added at its end.
    /// \param changes in the order of the blocks
    /// \param added whole blocks, each with a blank line behind it, with "\n" as line end; may be empty
    std::string with(const std::vector<Change>& changes, std::string_view added) const;

    /// The blocks that no shape stands for and of which a reader made something, as a text of their own.
    std::string keptBlocks() const;

  private:
    /// Where the block's own comment directly above it begins, or the block.
    std::size_t commentBegin_(std::size_t block) const;
    void add_(std::string& text, std::string_view added) const;

    std::string text_;
    std::vector<BlockSpan> blocks_;
    std::vector<bool> held_;
    std::string_view lineEnd_;
};

}  // namespace halCore::ZEL
