#include "format/SilentLines.h"

#include <algorithm>
#include <initializer_list>

#include "common/Strings.h"
#include "format/ColorNames.h"
#include "format/FileNumber.h"
#include "format/LineSettings.h"
#include "format/PlaceAdvice.h"
#include "format/ShapeCast.h"
#include "format/ShapeFields.h"

namespace halCore::ZEL {
namespace {

using Action = KeywordAction;
using P = ShapeParameter;
using PointType = ParsedShape::PointType;

constexpr const char* kUnread = "cannot be read, and is passed over";
constexpr const char* kUnused = "means nothing here";
constexpr const char* kSurplus = "has more words than are read";
constexpr const char* kLevel = "has an altitude that cannot be read, and means 0";

template <typename Kind>
bool is(const ZelShape& shape) {
    return isOf<Kind>(shape.shapeType());
}

bool isFalseToken(std::string_view text) {
    for (const std::string_view word : {"false", "f", "no", "n", "off", "0"})
        if (UTILS::equalsIgnoringCase(text, word)) return true;
    return false;
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

std::string passedOver(std::size_t counting, bool inPart = false) {
    std::string text = inPart ? "is passed over in part" : "is passed over";
    return text.append(", because line ").append(std::to_string(counting)).append(" counts");
}

std::string fateOfBoolean(std::string_view value) {
    return UTILS::stringIsTrueToken(value) || isFalseToken(value) ? "" : "cannot be read, and means false";
}

/// Of the value of an attribute that the shape has a use for. What the builder reports is not told again.
std::string fateOfValue(P parameter, const LineTokens& tokens, const ZelShape& shape) {
    const std::string_view value = tokens[1];
    const auto oneOf = [value](std::initializer_list<std::string_view> known) {
        return std::ranges::find(known, value) != known.end();
    };
    switch (parameter) {
        case P::LineColor:
        case P::FillColor:
        case P::TextOutlineColor:
            if (tokens.count() == 3) return value == "hex" ? "" : "is read as if \"hex\" stood in it";
            return isColorName(value) ? "" : "names no color that is known, and means red";
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
            return fateOfBoolean(value);
        case P::CenterAbsolute:
        case P::Center2Absolute:
        case P::CenterRelative:
        case P::Center2Relative:
            // That there is no center the builder reports, but for a label.
            if (is<Annotation>(shape)) return fateOfPosition(tokens, !shape.isRelative());
            return fateOfPosition(tokens, !shape.isRelative()) == kLevel ? kLevel : "";
        case P::ReferencePoint:
            return fateOfPosition(tokens, true) == kLevel ? kLevel : "";
        default:
            return {};
    }
}

std::string fateOfFollow(std::string_view letters) {
    if (letters.find_first_of("cpr") == std::string_view::npos) return kUnread;
    return letters.find_first_not_of("cpr ") == std::string_view::npos
               ? ""
               : "is read in part: only c, p and r mean something";
}

/// Of a line that names a version, wherever it stands.
std::string fateOfVersion(const LineTokens& tokens) {
    if (tokens.count() > 1 && tokens[1] != "2") return "is read as \"version 2\"";
    return tokens.count() > 2 ? kSurplus : "";
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

void SilentLines::tell_(std::size_t number, std::string_view line, std::string_view fate,
                        std::vector<ParseMessage>& silent) {
    if (fate.empty()) return;
    silent.push_back({number, halNotify::Warning,
                      std::string("\"").append(UTILS::excerpt(line)).append("\" ").append(fate)});
}

void SilentLines::tellOutside(std::size_t number, std::string_view line, std::vector<ParseMessage>& silent) {
    LineTokens tokens;
    tokens.split(UTILS::trimmed(line));
    if (tokens[0] == "version") tell_(number, UTILS::trimmed(line), fateOfVersion(tokens), silent);
}

std::string SilentLines::fateOfPoint_(const Line& line, const ZelShape& shape, PointType pointType) const {
    const bool isLabel = is<Annotation>(shape);
    const bool takesPoints = isLabel || is<PointBasedShape>(shape) || is<Points>(shape);
    if (!takesPoints || pointOf(*line.keyword, tokens_) != pointType) return kUnused;
    if (isLabel && line.number != firstPoint_) return passedOver(firstPoint_);
    if (line.keyword->action == Action::GridPoint)
        return tokens_.count() >= 3 && !readFileNumber(tokens_[2]) ? kLevel : "";
    // In a list that a centre makes absolute, offsets count as degrees.
    return fateOfPosition(tokens_, !shape.isRelative());
}

std::string SilentLines::fateOfSettings_(const Line& line, const LineSettings& settings,
                                         const ZelShape& shape) const {
    const Keyword& keyword = *line.keyword;
    std::size_t overridden = 0;
    std::size_t count = 0;
    std::size_t counting = 0;
    for (const auto& [parameter, value] : settings) {
        if (!isOf(parameter, shape)) return kUnused;
        ++count;
        const Last& last = lastOf_(parameter);
        if (last.line == line.number || last.value == value) continue;
        ++overridden;
        counting = last.line;
    }
    // A text that gives no name is still a text.
    if (overridden != 0 && keyword.action != Action::AnnotationText)
        return passedOver(counting, overridden != count);
    if (settings.sets(P::AngleEnd) && isSet_(P::AngleSweep)) return passedOver(lastOf_(P::AngleSweep).line);
    if (is<Annotation>(shape) && labelStands_ &&
        (keyword.action == Action::AbsolutePosition || keyword.action == Action::RelativePosition))
        return passedOver(firstPoint_);
    if (settings.sets(P::LineProjection) && !UTILS::stringIsTrueToken(lastOf_(P::Tessellate).value))
        return "means nothing without \"tessellate true\"";
    if (settings.sets(P::ExtrudeHeight) && lastOf_(P::AltitudeMode).value != "extrude")
        return "has a height that means nothing";
    if (keyword.action == Action::Value || keyword.action == Action::QuietValue ||
        keyword.action == Action::Color || keyword.action == Action::AbsolutePosition ||
        keyword.action == Action::RelativePosition || keyword.action == Action::ReferencePoint)
        return fateOfValue(keyword.parameter, tokens_, shape);
    return settings.sets(P::Follow) && keyword.action == Action::ThreeD
               ? fateOfFollow(settings.begin()->value)
               : "";
}

std::string SilentLines::fateOf_(const Line& line, const ZelShape& shape, PointType pointType) const {
    const Keyword& keyword = *line.keyword;
    const LineSettings settings(keyword, tokens_);
    const bool isKind = ZelShape::stringToShapeType(keyword.text) != ShapeType::None;
    if (isKind && is<ImageOverlay>(shape)) return "is passed over, because \"kml_groundoverlay\" counts";
    std::string fate;
    if (pointOf(keyword, tokens_) != PointType::None)
        fate = fateOfPoint_(line, shape, pointType);
    else if (keyword.text == "version")
        return fateOfVersion(tokens_);
    else if (keyword.action == Action::Ignore || tokens_.line().starts_with("3d billboard"))
        return "is passed over";
    else if (keyword.action == Action::QuietValue && settings.empty())
        return "has no value, and is passed over";
    else if (!settings.empty())
        fate = fateOfSettings_(line, settings, shape);
    if (fate.empty() && keyword.action == Action::Extrude && tokens_.count() >= 2) {
        fate = fateOfBoolean(tokens_[1]);
        if (fate.empty() && isFalseToken(tokens_[1]))
            fate = lastOf_(P::AltitudeMode).value == "extrude"
                       ? passedOver(lastOf_(P::AltitudeMode).line)
                       : "is passed over: nothing is extruded unless a line says so";
    }
    // "filled true" says nothing more than "filled".
    if (keyword.action == Action::Flag && tokens_.count() == 2 && UTILS::stringIsTrueToken(tokens_[1]))
        return fate;
    if (!fate.empty() || tokens_.count() <= wordsUsed(keyword.action)) return fate;
    // That these words look like digits of the reference is told already.
    const bool isTold =
        keyword.action == Action::GridPoint && !adviceOnReference(tokens_[1], tokens_[2], tokens_[3]).empty();
    return isTold ? "" : kSurplus;
}

void SilentLines::tell(std::size_t start, const ZelShape& shape, PointType pointType,
                       std::vector<ParseMessage>& silent) {
    for (Last& last : last_) last = {};
    firstPoint_ = 0;
    labelStands_ = false;
    for (const Line& line : lines_) {
        tokens_.split(line.text);
        for (const auto& [parameter, value] : LineSettings(*line.keyword, tokens_))
            last_[static_cast<std::size_t>(parameter)] = {line.number, std::string(value)};
        if (firstPoint_ != 0 || pointType == PointType::None || pointOf(*line.keyword, tokens_) != pointType)
            continue;
        firstPoint_ = line.number;
        labelStands_ = fateOfPoint_(line, shape, pointType) != kUnread;
    }
    // A centre that cannot be read has its message.
    if (isPlaceless(shape) && !isSet_(P::CenterAbsolute))
        silent.push_back({start, halNotify::Warning,
                          std::string(ZelShape::shapeTypeToString(shape.shapeType())) + " has no place"});
    for (const Line& line : lines_) {
        tokens_.split(line.text);
        tell_(line.number, line.text, fateOf_(line, shape, pointType), silent);
    }
}

}  // namespace halCore::ZEL
