#include "format/SourceText.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/Strings.h"
#include "format/Keyword.h"
#include "format/LineTokens.h"

namespace halCore::ZEL {
namespace {

/// The last line of a text, its line end included.
std::string_view lastLine(std::string_view text) {
    const std::size_t end = text.ends_with('\n') ? text.size() - 1 : text.size();
    return text.substr(text.substr(0, end).rfind('\n') + 1);
}

std::string_view firstLine(std::string_view text) {
    return text.substr(0, std::min(text.find('\n'), text.size() - 1) + 1);
}

bool isBlankLine(std::string_view line) {
    return !line.empty() && UTILS::trimmed(line).empty();
}

bool isComment(std::string_view line) {
    line = UTILS::trimmed(line);
    if (line.empty()) return false;
    LineTokens tokens;
    tokens.split(line);
    return line.front() == '#' || line.front() == '/' ||
           findKeyword(tokens[0]).action == KeywordAction::Comment;
}

}  // namespace

std::string_view SourceText::lineEndOf(std::string_view text) {
    const std::size_t feed = text.find('\n');
    return feed != std::string_view::npos && feed > 0 && text[feed - 1] == '\r' ? "\r\n" : "\n";
}

SourceText::SourceText(std::string text, std::vector<BlockSpan> blocks, std::vector<bool> held,
                       std::string_view lineEnd)
    : text_(std::move(text)), blocks_(std::move(blocks)), held_(std::move(held)) {
    for (BlockSpan& block : blocks_) block.end = std::min(block.end, text_.size());
    held_.resize(blocks_.size());
    lineEnd_ = lineEndOf(lineEnd.empty() ? text_ : lineEnd);
}

std::optional<std::size_t> SourceText::blockOfLine(std::size_t line) const {
    const auto next = std::ranges::upper_bound(blocks_, line, {}, &BlockSpan::line);
    if (next == blocks_.begin() || std::prev(next)->lastLine < line) return std::nullopt;
    return static_cast<std::size_t>(next - blocks_.begin()) - 1;
}

std::string_view SourceText::blockText(std::size_t index) const {
    const BlockSpan& block = blocks_[index];
    return std::string_view(text_).substr(block.begin, block.end - block.begin);
}

std::size_t SourceText::commentBegin_(std::size_t block) const {
    const std::size_t before = block == 0 ? 0 : blocks_[block - 1].end;
    std::string_view above = std::string_view(text_).substr(0, blocks_[block].begin).substr(before);
    while (!above.empty() && isComment(lastLine(above))) above.remove_suffix(lastLine(above).size());
    return block == 0 && above.empty() ? blocks_[block].begin : before + above.size();
}

std::string SourceText::with(const std::vector<Change>& changes, std::string_view added) const {
    std::string result;
    result.reserve(text_.size() + added.size() + 256);
    const std::string_view text(text_);
    // Behind a block without an "end" nothing can stand.
    const bool isOpen = !blocks_.empty() && !blocks_.back().isEnded;
    const std::size_t tail = isOpen ? commentBegin_(blocks_.size() - 1) : text.size();
    std::size_t done = 0;
    for (const Change& change : changes) {
        const BlockSpan& block = blocks_[change.block];
        if (!change.lines.empty()) {
            result.append(text.substr(done, block.begin - done)).append(change.lines);
            done = block.end;
            continue;
        }
        result.append(text.substr(done, std::max(commentBegin_(change.block), done) - done));
        done = block.end;
        // Of the blank lines on both sides one is enough.
        const std::string_view behind = firstLine(text.substr(done));
        if ((result.empty() || isBlankLine(lastLine(result))) && isBlankLine(behind)) done += behind.size();
    }
    result.append(text.substr(done, tail - done));
    if (!added.empty()) add_(result, added);
    result.append(text.substr(tail));
    return result;
}

std::string SourceText::withLineEnds(std::string lines) const {
    if (lineEnd_ == "\n") return lines;
    std::string text;
    for (const char c : lines)
        if (c == '\n')
            text += lineEnd_;
        else
            text += c;
    return text;
}

void SourceText::add_(std::string& text, std::string_view added) const {
    const bool isLast = blocks_.empty() || blocks_.back().isEnded;
    const bool endsLine = text.empty() || text.ends_with('\n');
    const bool leavesBlank = text.empty() || isBlankLine(lastLine(text));
    if (!endsLine) text += lineEnd_;
    if (!leavesBlank) text += lineEnd_;
    text += withLineEnds(std::string(added));
    // As the text ended before, so it ends now.
    if (isLast && !leavesBlank) text.resize(text.size() - lineEnd_.size());
    if (isLast && !endsLine) text.resize(text.size() - lineEnd_.size());
}

std::string SourceText::keptBlocks() const {
    std::string kept;
    for (std::size_t i = 0; i < blocks_.size(); ++i)
        if (!held_[i] && blocks_[i].makesShape) kept.append(blockText(i)).append("\n");
    return kept;
}

}  // namespace halCore::ZEL
