#include "format/BlockLines.h"

#include <algorithm>

#include "common/Strings.h"
#include "format/FileNumber.h"
#include "format/LineSettings.h"

namespace halCore::ZEL {
namespace {

using Action = KeywordAction;
using P = ShapeParameter;
using PointType = ParsedShape::PointType;

/// A line without its line end and the blanks in front of it.
std::string_view withoutEnd(std::string_view line) {
    while (!line.empty() && UTILS::isBlank(line.back())) line.remove_suffix(1);
    return line;
}

std::string_view indentation(std::string_view line) {
    std::size_t length = 0;
    while (length < line.size() && (line[length] == ' ' || line[length] == '\t')) ++length;
    return line.substr(0, length);
}

bool isReadable(const Keyword& keyword, const LineTokens& tokens) {
    if (keyword.action == Action::GridPoint) return true;
    if (keyword.action == Action::RelativePoint)
        return readFileNumber(tokens[1]) && readFileNumber(tokens[2]);
    return readFileDegrees(tokens[1], AngleKind::Latitude) &&
           readFileDegrees(tokens[2], AngleKind::Longitude);
}

/// Of a line that is no point.
int slotOfLine(const Keyword& keyword, const LineTokens& tokens, bool relative) {
    const LineSettings settings(keyword, tokens);
    if (keyword.action == Action::Shape) return kShapeSlot;
    if (settings.empty() || keyword.action == Action::Orient || keyword.action == Action::Extrude)
        return kNoSlot;
    const P set = settings.begin()->parameter;
    switch (keyword.parameter) {
        case P::AnnotationText:
            return slotOf(P::AnnotationText);
        case P::CenterAbsolute:
        case P::Center2Absolute:
            return relative ? int(kOtherPositionSlot) : slotOf(set);
        case P::CenterRelative:
            return relative ? slotOf(P::CenterAbsolute) : int(kOtherPositionSlot);
        case P::Center2Relative:
            return relative ? slotOf(P::Center2Absolute) : int(kOtherPositionSlot);
        default:
            return slotOf(set);
    }
}

}  // namespace

std::vector<std::string_view> wordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    std::size_t at = 0;
    while (at < line.size()) {
        if (UTILS::isBlank(line[at])) {
            ++at;
            continue;
        }
        const std::size_t begin = at;
        if (line[at] == '"') at = std::min(line.find('"', at + 1), line.size());
        while (at < line.size() && !UTILS::isBlank(line[at])) ++at;
        words.push_back(line.substr(begin, at - begin));
    }
    return words;
}

BlockLines::BlockLines(std::string_view block, const ZelShape& read,
                       std::span<const std::string_view> untouched) {
    LineTokens tokens;
    PointType taken = PointType::None;
    while (!block.empty()) {
        if (!untouched.empty() && untouched.front().data() == block.data()) {
            lines_.push_back({.text = untouched.front(), .isUntouched = true});
            block.remove_prefix(untouched.front().size());
            untouched = untouched.subspan(1);
            continue;
        }
        Line line{.text = block.substr(0, std::min(block.find('\n'), block.size() - 1) + 1)};
        block.remove_prefix(line.text.size());
        const std::string_view words = UTILS::trimmed(line.text);
        if (!words.empty() && words.front() != '#' && words.front() != '/') {
            tokens.split(words);
            const Keyword& keyword = keywordOf(tokens);
            line.keyword = &keyword;
            if (const PointType kind = pointOf(keyword, tokens); kind != PointType::None) {
                if (taken == PointType::None) taken = kind;
                if (kind != taken)
                    line.slot = kOtherPositionSlot;
                else if (isReadable(keyword, tokens))
                    line.slot = kPointSlot;
            } else {
                line.slot = slotOfLine(keyword, tokens, read.isRelative());
            }
            if (keyword.action == Action::End) end_ = lines_.size();
        }
        if (line.slot != kNoSlot) setters_[line.slot].push_back(lines_.size());
        lines_.push_back(line);
    }
}

const std::vector<std::size_t>& BlockLines::setters(int slot) const {
    static const std::vector<std::size_t> none;
    const auto found = setters_.find(slot);
    return found == setters_.end() ? none : found->second;
}

std::size_t BlockLines::numberOf(std::size_t line) const {
    std::size_t number = 0;
    for (std::size_t i = 0; i < line; ++i)
        number += static_cast<std::size_t>(std::ranges::count(lines_[i].text, '\n'));
    return number;
}

void BlockLines::removeAll(int slot) {
    for (const std::size_t line : setters(slot)) remove(line);
}

std::string BlockLines::newLine_(std::size_t beside, std::string_view text) const {
    const bool hasReturn = lines_.front().text.ends_with("\r\n");
    return std::string(indentation(lines_[beside].text)).append(text).append(hasReturn ? "\r\n" : "\n");
}

void BlockLines::insertBehind(std::size_t line, std::string_view text) {
    edits_[line].behind += newLine_(line, text);
}

void BlockLines::insertBefore(std::size_t line, std::string_view text) {
    edits_[line].before += newLine_(line, text);
}

void BlockLines::append(std::string_view text) {
    // Indented as the lines inside are.
    const auto& shape = setters(kShapeSlot);
    edits_[end_].before += newLine_(shape.empty() ? end_ : shape.front(), text);
}

std::string BlockLines::text_(bool whole) const {
    std::size_t size = 0;
    for (const Line& line : lines_) size += line.isUntouched && !whole ? 0 : line.text.size();
    std::string text;
    text.reserve(size + 1024);
    auto edit = edits_.begin();
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        const std::string_view line = lines_[i].text;
        if (edit == edits_.end() || edit->first != i) {
            if (whole || !lines_[i].isUntouched) text += line;
            continue;
        }
        const auto& [own, before, behind] = edit->second;
        text += before;
        if (!own)
            text += line;
        else if (!own->empty())
            text.append(*own).append(line.substr(withoutEnd(line).size()));
        text += behind;
        ++edit;
    }
    return text;
}

}  // namespace halCore::ZEL
