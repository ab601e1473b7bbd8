#include "format/LostLines.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "common/NumberText.h"
#include "common/Strings.h"
#include "format/BlockLines.h"
#include "format/LineTokens.h"
#include "format/Parser.h"

namespace halCore::ZEL {
namespace {

using Action = KeywordAction;
using P = ShapeParameter;

/// What a line is about, the same for lines that can take each other's place; -1 for nothing that is known.
int topicOf(const BlockLines::Line& line) {
    if (line.slot == kOtherPositionSlot) return kNoSlot;
    switch (line.keyword->action) {
        case Action::Unknown:
        case Action::Ignore:
        case Action::AbsolutePoint:
        case Action::RelativePoint:
        case Action::GridPoint:
            return line.slot;
        case Action::Orient:
            return slotOf(P::Follow);
        case Action::ThreeD:
            return line.slot == slotOf(P::Name) ? line.slot : slotOf(P::Follow);
        case Action::Extrude:
            return slotOf(P::AltitudeMode);
        case Action::Start:
        case Action::End:
            return kShapeSlot;
        default:
            break;
    }
    switch (line.keyword->parameter) {
        case P::MajorAxis:
        case P::MinorAxis:
            return slotOf(P::Radius);
        case P::AngleEnd:
            return slotOf(P::AngleSweep);
        case P::LineProjection:
            return slotOf(P::Tessellate);
        default:
            return line.slot;
    }
}

/// A text's first line, without the blanks at its ends; the text loses it.
std::string_view takeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return UTILS::trimmed(line);
}

/// Whether lines stand in a text, most of them asked for in its order.
class StandingLines {
  public:
    explicit StandingLines(std::string_view text) : text_(text), rest_(text) {}

    bool contains(std::string_view line) {
        std::string_view rest = rest_;
        if (takeLine(rest) == line) {
            rest_ = rest;
            return true;
        }
        if (sorted_.empty()) {
            for (rest = text_; !rest.empty();) sorted_.push_back(takeLine(rest));
            std::ranges::sort(sorted_);
        }
        return std::ranges::binary_search(sorted_, line);
    }

  private:
    std::string_view text_;
    /// What may come next.
    std::string_view rest_;
    /// All of them, once they are asked for.
    std::vector<std::string_view> sorted_;
};

/// What a reader makes of a block, as text. Points stand for themselves: few of them are enough.
class Probe {
  public:
    explicit Probe(const BlockLines& block) : block_(block) {
        constexpr std::size_t enough = 4;
        const auto& points = block.setters(kPointSlot);
        for (std::size_t i = enough; i < points.size(); ++i) without_.insert(points[i]);
        text_ = read_();
    }

    /// Whether the line says something that no other one says. One that does not is not there from now on.
    bool counts(std::size_t line) {
        without_.insert(line);
        const std::string less = read_();
        if (less == text_) return false;
        without_.erase(line);
        return true;
    }

  private:
    std::string read_() const {
        std::string lines;
        for (std::size_t i = 0; i < block_.lines().size(); ++i)
            if (!without_.contains(i)) lines.append(block_.lines()[i].text);
        Parser::Shapes shapes;
        ParseReport report;
        Parser().parse(lines, shapes, report);
        std::ostringstream out;
        out.precision(UTILS::kSignificantDigits);
        for (const auto& shape : shapes) shape->serializeToStream(out);
        return std::move(out).str();
    }

    const BlockLines& block_;
    std::set<std::size_t> without_;
    std::string text_;
};

}  // namespace

ParseMessage lostLine(std::size_t number, std::string_view line) {
    return {
        number, halNotify::Warning,
        std::string("\"").append(UTILS::excerpt(UTILS::trimmed(line))).append("\" is not in the new block")};
}

bool hasAllLines(std::string_view anew, std::string_view block) {
    StandingLines standing(anew);
    while (!block.empty())
        if (const std::string_view line = takeLine(block); !line.empty() && !standing.contains(line))
            return false;
    return true;
}

std::vector<ParseMessage> lostLines(std::string_view block, const ZelShape& read, std::string_view anew,
                                    const ZelShape& written) {
    const BlockLines now(anew, written);
    std::set<int> topics;
    StandingLines standing(anew);
    for (const BlockLines::Line& line : now.lines())
        if (line.keyword) topics.insert(topicOf(line));
    std::vector<ParseMessage> lost;
    const BlockLines old(block, read);
    Probe probe(old);
    for (std::size_t i = 0; i < old.lines().size(); ++i) {
        const BlockLines::Line& line = old.lines()[i];
        const std::string_view text = UTILS::trimmed(line.text);
        if (text.empty() || standing.contains(text)) continue;
        const int topic = line.keyword ? topicOf(line) : int(kNoSlot);
        const bool isPoint = topic == kPointSlot;
        if (topic != kNoSlot && topics.contains(topic) && (isPoint || probe.counts(i))) continue;
        lost.push_back(lostLine(i, text));
    }
    return lost;
}

}  // namespace halCore::ZEL
