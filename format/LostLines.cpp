#include "format/LostLines.h"

#include <set>
#include <string>

#include "common/Strings.h"
#include "format/BlockLines.h"
#include "format/LineTokens.h"

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

}  // namespace

std::vector<ParseMessage> lostLines(std::string_view block, std::size_t firstLine, const ZelShape& read,
                                    std::string_view anew, const ZelShape& written) {
    const BlockLines now(anew, written);
    std::set<int> topics;
    std::set<std::string_view> texts;
    for (const BlockLines::Line& line : now.lines()) {
        texts.insert(UTILS::trimmed(line.text));
        if (line.keyword) topics.insert(topicOf(line));
    }
    std::vector<ParseMessage> lost;
    const BlockLines old(block, read);
    for (std::size_t i = 0; i < old.lines().size(); ++i) {
        const BlockLines::Line& line = old.lines()[i];
        const std::string_view text = UTILS::trimmed(line.text);
        if (text.empty() || texts.contains(text)) continue;
        const int topic = line.keyword ? topicOf(line) : int(kNoSlot);
        if (topic != kNoSlot && topics.contains(topic)) continue;
        lost.push_back({firstLine + i, halNotify::Warning,
                        std::string("\"").append(UTILS::excerpt(text)).append("\" is not in the new block")});
    }
    return lost;
}

}  // namespace halCore::ZEL
