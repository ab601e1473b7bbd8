#include "format/SilentLines.h"

#include <algorithm>
#include <optional>

#include "common/Strings.h"
#include "format/ColorNames.h"
#include "format/FileNumber.h"
#include "format/ShapeFields.h"
#include "format/ZelShapes.h"
#include "geo/Mgrs.h"

namespace halCore::ZEL {
namespace {

using Action = KeywordAction;
using P = ShapeParameter;
using PointType = ParsedShape::PointType;

constexpr const char* kUnread = "cannot be read, and is passed over";
constexpr const char* kUnused = "means nothing here";
constexpr const char* kLevel = "has an altitude that cannot be read, and means 0";

template <typename Kind>
bool is(const ZelShape& shape) {
    return dynamic_cast<const Kind*>(&shape) != nullptr;
}

bool isFalseToken(std::string_view text) {
    for (const std::string_view word : {"false", "f", "no", "n", "off", "0"})
        if (UTILS::equalsIgnoringCase(text, word)) return true;
    return false;
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

/// The attribute that a line sets, when it does.
std::optional<P> attributeOf(const Keyword& keyword, const LineTokens& tokens) {
    const std::size_t words = tokens.count();
    const auto when = [&](bool isSet) { return isSet ? std::optional(keyword.parameter) : std::nullopt; };
    switch (keyword.action) {
        case Action::Flag:
            return keyword.parameter;
        case Action::Value:
        case Action::QuietValue:
        case Action::RestOfLine:
        case Action::Half:
        case Action::Double:
            return when(words >= 2);
        case Action::Color:
            return when(words == 2 || words == 3);
        case Action::AbsolutePosition:
        case Action::RelativePosition:
        case Action::ReferencePoint:
            return when(words >= 3);
        case Action::Scale:
            return when(words >= 4);
        case Action::ThreeD:
            return when(words >= 3 && tokens.line().starts_with("3d name"));
        default:
            return std::nullopt;
    }
}

/// Whether the shape has a use for an attribute.
bool isOf(P parameter, const ZelShape& shape) {
    const bool relative = shape.isRelative();
    switch (parameter) {
        case P::LineColor:
            return !is<ImageOverlay>(shape);
        case P::LineWidth:
        case P::LineStyle:
        case P::Filled:
        case P::FillColor:
            return is<FillableShape>(shape);
        case P::Outline:
            return is<OutlinedShape>(shape);
        case P::PointSize:
            return is<Points>(shape);
        case P::FontName:
        case P::FontSize:
        case P::TextOutlineColor:
        case P::TextOutlineThickness:
        case P::Priority:
            return is<Annotation>(shape);
        case P::Tessellate:
        case P::LineProjection:
            return is<PointBasedShape>(shape);
        case P::Radius:
            return is<CircularShape>(shape);
        case P::AngleStart:
        case P::AngleEnd:
        case P::AngleSweep:
            return is<EllipticalShape>(shape);
        case P::MajorAxis:
        case P::MinorAxis:
            return is<EllipticalShape>(shape) || is<Ellipsoid>(shape);
        case P::Height:
            return is<CircularHeightShape>(shape) || is<Cylinder>(shape);
        case P::CenterAbsolute:
        case P::CenterRelative:
            return (is<CircularShape>(shape) || is<Annotation>(shape)) &&
                   relative == (parameter == P::CenterRelative);
        case P::Center2Absolute:
        case P::Center2Relative:
            return is<Orbit>(shape) && relative == (parameter == P::Center2Relative);
        default:
            return true;
    }
}

/// Of a position, by the words of its coordinates.
std::string fateOfPosition(const LineTokens& tokens, bool asDegrees) {
    const auto isRead = [&](std::size_t word, AngleKind kind) {
        return asDegrees ? readFileDegrees(tokens[word], kind).has_value()
                         : readFileNumber(tokens[word]).has_value();
    };
    if (!isRead(1, AngleKind::Latitude) || !isRead(2, AngleKind::Longitude)) return kUnread;
    return tokens.count() == 3 || readFileNumber(tokens[3]) ? "" : kLevel;
}

/// Of the value of an attribute that the shape has a use for. What the builder reports is not told again.
std::string fateOfValue(P parameter, const Keyword& keyword, const LineTokens& tokens,
                        const ZelShape& shape) {
    const std::string_view value = tokens[1];
    const auto oneOf = [value](std::initializer_list<std::string_view> known) {
        return std::ranges::find(known, value) != known.end();
    };
    switch (parameter) {
        case P::LineColor:
        case P::FillColor:
        case P::TextOutlineColor:
            return tokens.count() != 2 || isColorName(value) ? ""
                                                             : "names no color that is known, and means red";
        case P::AltitudeMode:
            return oneOf({"none", "clamptoground", "relativetoground", "extrude"}) ? "" : kUnread;
        case P::VerticalDatum:
            return oneOf({"wgs84", "egm1984", "egm84", "egm1996", "egm96", "egm2008", "egm08"}) ? ""
                                                                                                : kUnread;
        case P::LineProjection:
            return oneOf({"greatcircle", "rhumbline"}) ? "" : "cannot be read, and means rhumbline";
        case P::Outline:
        case P::DepthBuffer:
        case P::Tessellate:
            return UTILS::stringIsTrueToken(value) || isFalseToken(value) ? ""
                                                                          : "cannot be read, and means false";
        case P::CenterAbsolute:
        case P::Center2Absolute:
        case P::CenterRelative:
        case P::Center2Relative:
            // That there is no center the builder reports.
            return fateOfPosition(tokens, !shape.isRelative()) == kLevel ? kLevel : "";
        case P::ReferencePoint:
            return fateOfPosition(tokens, true) == kLevel ? kLevel : "";
        default:
            return keyword.action == Action::Flag && tokens.count() == 2 && UTILS::stringIsTrueToken(value)
                       ? "+"
                       : "";
    }
}

/// How many words a reader uses at most.
std::size_t wordsUsed(Action action) {
    switch (action) {
        case Action::Start:
        case Action::End:
        case Action::Shape:
        case Action::Flag:
            return 1;
        case Action::Value:
        case Action::QuietValue:
        case Action::Half:
        case Action::Double:
            return 2;
        case Action::GridPoint:
        case Action::Extrude:
            return 3;
        case Action::AbsolutePoint:
        case Action::RelativePoint:
        case Action::AbsolutePosition:
        case Action::RelativePosition:
        case Action::ReferencePoint:
        case Action::Scale:
        case Action::Orient:
            return 4;
        case Action::Box:
            return 7;
        default:
            return std::size_t(-1);
    }
}

}  // namespace

void SilentLines::add(std::size_t number, const Keyword& keyword, std::string_view line) {
    lines_.push_back({number, std::string(UTILS::trimmed(line)), &keyword});
}

std::string SilentLines::fateOfPoint_(const Line& line, const ZelShape& shape, PointType pointType) {
    const bool isLabel = is<Annotation>(shape);
    const bool takesPoints = isLabel || is<PointBasedShape>(shape) || is<Points>(shape);
    if (!takesPoints || pointOf(*line.keyword, tokens_) != pointType) return kUnused;
    if (isLabel && labelPoint_ != 0)
        return "is passed over, because line " + std::to_string(labelPoint_) + " counts";
    if (isLabel) labelPoint_ = line.number;
    if (line.keyword->action == Action::GridPoint)
        return tokens_.count() >= 3 && !readFileNumber(tokens_[2]) ? kLevel : "";
    // In a list that a centre makes absolute, offsets count as degrees.
    return fateOfPosition(tokens_, isLabel ? pointType == PointType::Absolute : !shape.isRelative());
}

std::string SilentLines::fateOf_(const Line& line, const ZelShape& shape, PointType pointType) {
    const Keyword& keyword = *line.keyword;
    std::string fate;
    if (pointOf(keyword, tokens_) != PointType::None) {
        fate = fateOfPoint_(line, shape, pointType);
    } else if (const auto parameter = attributeOf(keyword, tokens_)) {
        const std::size_t counts = counts_[static_cast<std::size_t>(*parameter)];
        if (!isOf(*parameter, shape)) return kUnused;
        const auto last = std::ranges::find(lines_, counts, &Line::number);
        if (counts != line.number && last->text != line.text)
            return "is passed over, because line " + std::to_string(counts) + " counts";
        if (const std::size_t sweep = counts_[static_cast<std::size_t>(P::AngleSweep)];
            *parameter == P::AngleEnd && sweep != 0)
            return "is passed over, because line " + std::to_string(sweep) + " counts";
        fate = fateOfValue(*parameter, keyword, tokens_, shape);
        // "filled true" says nothing more than "filled".
        if (fate == "+") return {};
    } else if (keyword.action == Action::Ignore && keyword.text != "version") {
        return "is passed over";
    } else if (tokens_.line().starts_with("3d billboard")) {
        return "is passed over";
    } else if (keyword.action == Action::Extrude && tokens_.count() >= 2 &&
               !UTILS::stringIsTrueToken(tokens_[1]) && !isFalseToken(tokens_[1])) {
        return "cannot be read, and means false";
    }
    if (fate.empty() && tokens_.count() > wordsUsed(keyword.action)) fate = "has more words than are read";
    return fate;
}

void SilentLines::tell(std::size_t start, const ZelShape& shape, PointType pointType,
                       std::vector<ParseMessage>& silent) {
    counts_.fill(0);
    labelPoint_ = 0;
    for (const Line& line : lines_) {
        tokens_.split(line.text);
        if (const auto parameter = attributeOf(*line.keyword, tokens_))
            counts_[static_cast<std::size_t>(*parameter)] = line.number;
    }
    // A centre that cannot be read has its message.
    if (isPlaceless(shape) && counts_[static_cast<std::size_t>(P::CenterAbsolute)] == 0)
        silent.push_back({start, halNotify::Warning,
                          std::string(ZelShape::shapeTypeToString(shape.shapeType())) + " has no place"});
    for (const Line& line : lines_) {
        tokens_.split(line.text);
        if (const std::string fate = fateOf_(line, shape, pointType); !fate.empty())
            silent.push_back(
                {line.number, halNotify::Warning,
                 std::string("\"").append(UTILS::excerpt(line.text)).append("\" ").append(fate)});
    }
}

}  // namespace halCore::ZEL
