#include "format/LineSettings.h"

#include <algorithm>

#include "common/Strings.h"
#include "geo/Mgrs.h"

namespace halCore::ZEL {
namespace {

using Action = KeywordAction;
using P = ShapeParameter;
using PointType = ParsedShape::PointType;

constexpr std::string_view kFollowed = "cpr";

}  // namespace

const Keyword& keywordOf(const LineTokens& tokens) {
    const Keyword& keyword = findKeyword(tokens[0]);
    if (keyword.action != Action::Unknown) return keyword;
    for (const std::string_view begin : {"rotate", "extrude"})
        if (tokens[0].starts_with(begin)) return findKeyword(begin);
    return keyword;
}

std::optional<P> parameterOf3d(const LineTokens& tokens) {
    struct Entry {
        std::string_view begin;
        P parameter;
    };
    static constexpr Entry entries[] = {{"3d name", P::Name},
                                        {"3d offsetalt", P::OffsetAltitude},
                                        {"3d offsetcourse", P::OffsetCourse},
                                        {"3d offsetpitch", P::OffsetPitch},
                                        {"3d offsetroll", P::OffsetRoll},
                                        {"3d follow", P::Follow}};
    for (const Entry& entry : entries)
        if (tokens.line().starts_with(entry.begin)) return entry.parameter;
    return std::nullopt;
}

PointType pointOf(const Keyword& keyword, const LineTokens& tokens) {
    double lat = 0.0;
    double lon = 0.0;
    switch (keyword.action) {
        case Action::AbsolutePoint:
            return tokens.count() >= 3 ? PointType::Absolute : PointType::None;
        case Action::RelativePoint:
            return tokens.count() >= 3 ? PointType::Relative : PointType::None;
        case Action::GridPoint:
            return Mgrs::convertMgrsToGeodetic(tokens[1], lat, lon) == 0 ? PointType::Absolute
                                                                         : PointType::None;
        default:
            return PointType::None;
    }
}

LineSettings::LineSettings(const Keyword& keyword, const LineTokens& tokens) {
    const std::size_t words = tokens.count();
    const auto when = [&](bool isSet, P parameter, std::string_view value) {
        if (isSet) add_(parameter, value);
    };
    switch (keyword.action) {
        case Action::Flag:
            add_(keyword.parameter, keyword.text);
            break;
        case Action::Value:
        case Action::QuietValue:
            when(words >= 2, keyword.parameter, tokens[1]);
            break;
        case Action::RestOfLine:
            when(words >= 2, keyword.parameter, tokens.from(1));
            break;
        case Action::Half:
        case Action::Double:
            // Whatever their values, they do not say the same as the other keyword of the attribute.
            when(words >= 2, keyword.parameter, tokens.line());
            break;
        case Action::Color:
            when(words == 2 || words == 3, keyword.parameter, tokens.from(1));
            break;
        case Action::AbsolutePosition:
        case Action::RelativePosition:
        case Action::ReferencePoint:
            when(words >= 3, keyword.parameter, tokens.from(1));
            break;
        case Action::Scale:
            when(words >= 4, keyword.parameter, tokens.from(1));
            break;
        case Action::AnnotationText:
            // Its text and, unless a later line gives another one, its name.
            when(words >= 2, P::Name, tokens.line());
            break;
        case Action::Orient:
            if (words < 2) break;
            add_(P::Follow, kFollowed.substr(0, words - 1));
            add_(P::OffsetCourse, tokens[1]);
            when(words >= 3, P::OffsetPitch, tokens[2]);
            when(words >= 4, P::OffsetRoll, tokens[3]);
            break;
        case Action::Extrude:
            when(words >= 2 && UTILS::stringIsTrueToken(tokens[1]), P::AltitudeMode, "extrude");
            when(words >= 3, P::ExtrudeHeight, tokens[2]);
            break;
        case Action::ThreeD:
            if (const auto parameter = parameterOf3d(tokens); parameter && words >= 3)
                add_(*parameter, tokens.from(2));
            break;
        default:
            break;
    }
}

bool LineSettings::sets(P parameter) const {
    return std::ranges::find(*this, parameter, &Setting::parameter) != end();
}

}  // namespace halCore::ZEL
