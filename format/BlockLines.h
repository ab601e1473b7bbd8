#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "format/Keyword.h"
#include "format/ZelShape.h"

namespace halCore::ZEL {

/// A value of a shape by its place in a block: a parameter's number, centres of both kinds under the absolute
/// one's; or one of these.
enum BlockSlot : int {
    kNoSlot = -1,
    /// A point that the shape takes.
    kPointSlot = 1000,
    /// The shape's keyword.
    kShapeSlot,
    /// A position of the kind that the shape does not take.
    kOtherPositionSlot
};
constexpr int slotOf(ShapeParameter parameter) {
    return static_cast<int>(parameter);
}

/// The words of a line as they stand in it, a quoted one as one.
std::vector<std::string_view> wordsOf(std::string_view line);

/// A block cut into its lines, and what is to become of them.
class BlockLines {
  public:
    struct Line {
        /// With its line end.
        std::string_view text;
        const Keyword* keyword = nullptr;
        int slot = kNoSlot;
        bool isUntouched = false;
    };

    /// \param read what a reader makes of the block
    /// \param untouched lines of it, in their order, that nobody looks at; they count as one
    BlockLines(std::string_view block, const ZelShape& read,
               std::span<const std::string_view> untouched = {});

    const std::vector<Line>& lines() const { return lines_; }
    /// The lines that set a value, in their order.
    const std::vector<std::size_t>& setters(int slot) const;

    /// What a line becomes; its line end is the line's own.
    void replace(std::size_t line, std::string text) {
        // Of a long list in its order.
        edits_.try_emplace(edits_.end(), line)->second.text = std::move(text);
    }
    void remove(std::size_t line) { edits_[line].text = std::string(); }
    void removeAll(int slot);
    bool isEdited(std::size_t line) const {
        const auto edit = edits_.find(line);
        return edit != edits_.end() && edit->second.text;
    }
    bool isRemoved(std::size_t line) const { return isEdited(line) && edits_.at(line).text->empty(); }
    /// Of the line in the block, from 0: what is untouched counts with all of its lines.
    std::size_t numberOf(std::size_t line) const;
    /// Adds a line, without its line end, with the indentation of the one that it stands beside.
    void insertBehind(std::size_t line, std::string_view text);
    void insertBefore(std::size_t line, std::string_view text);
    /// In front of the "end".
    void append(std::string_view text);

    std::string text() const { return text_(true); }
    /// The same without what is untouched.
    std::string rest() const { return text_(false); }

  private:
    struct Edit {
        std::optional<std::string> text;
        std::string before;
        std::string behind;
    };

    std::string text_(bool whole) const;
    std::string newLine_(std::size_t beside, std::string_view text) const;

    std::vector<Line> lines_;
    std::map<int, std::vector<std::size_t>> setters_;
    std::map<std::size_t, Edit> edits_;
    std::size_t end_ = 0;
};

}  // namespace halCore::ZEL
