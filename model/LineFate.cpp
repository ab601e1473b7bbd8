#include "model/LineFate.h"

#include "common/Strings.h"
#include "format/ColorNames.h"
#include "format/FileNumber.h"
#include "format/ZelShapes.h"
#include "geo/Units.h"
#include "model/CylinderShape.h"
#include "model/ShapeKinds.h"
#include "model/ZelToSerializer.h"

namespace OverlayEditor {
namespace {

namespace ZEL = halCore::ZEL;
using Action = ZEL::KeywordAction;
using P = ZEL::ShapeParameter;
using ZEL::LineTokens;
using ZEL::ShapeType;

constexpr LineFate kKept{};
constexpr LineFate kDropped{halNotify::Warning, "is dropped"};
constexpr LineFate kLevel{halNotify::Warning, "loses its altitude, which cannot be read"};
constexpr LineFate kCut{halNotify::Warning, "loses what stands behind its values"};

constexpr LineFate keptIf(bool kept, const LineFate& otherwise = kUnusedLine) {
    return kept ? kKept : otherwise;
}

template <typename Kind>
const Kind* as(const ZEL::ZelShape& shape) {
    return dynamic_cast<const Kind*>(&shape);
}

/// The kind as which a shape is read; null for one that is left out.
const ShapeKind* kindOf(const ZEL::ZelShape& shape) {
    return kindReadFrom(ZelToSerializer().typeOf(shape));
}

bool isSet(int getterResult) {
    return getterResult == 0;
}

template <typename Shape>
bool hasBothAxes(const Shape& shape) {
    double metres = 0.0;
    return isSet(shape.getMajorAxis(metres)) && isSet(shape.getMinorAxis(metres));
}

LineFate fateOfLength(std::string_view value) {
    return keptIf(!value.starts_with('-'), {halNotify::Notice, "is saved without its sign"});
}

LineFate fateOfRadius(std::string_view value, const ZEL::ZelShape& shape) {
    constexpr LineFate axesCount{halNotify::Warning, "is dropped, because the axes count"};
    const auto* const circular = as<ZEL::CircularShape>(shape);
    if (!circular) return kUnusedLine;
    if (const auto* const ellipse = as<ZEL::EllipticalShape>(shape); ellipse && hasBothAxes(*ellipse))
        return axesCount;
    if (const auto* const ellipsoid = as<ZEL::Ellipsoid>(shape); ellipsoid && hasBothAxes(*ellipsoid))
        return axesCount;
    return fateOfLength(value);
}

LineFate fateOfAngle(const ZEL::ZelShape& shape) {
    const auto* const ellipse = as<ZEL::EllipticalShape>(shape);
    if (!ellipse) return kUnusedLine;
    double sweep = 0.0;
    if (!isSet(ellipse->getAngleSweep(sweep))) return {halNotify::Warning, "is dropped without a sweep"};
    return keptIf(kindOf(shape)->sector != ShapeKind::Sector::None, kDropped);
}

LineFate fateOfHeight(const ZEL::ZelShape& shape) {
    double height = 0.0;
    if (const auto* const ellipsoid = as<ZEL::Ellipsoid>(shape)) {
        ellipsoid->getHeight(height);
        return keptIf(height > 0.0,
                      {halNotify::Notice, "means as high as the longer radius, and is saved so"});
    }
    const ShapeKind* const kind = kindOf(shape);
    return keptIf(kind && kind->height == ShapeKind::Height::Own);
}

LineFate fateOfUnits(const halCore::Units& units, const halCore::Units& saved) {
    return keptIf(units == saved, {halNotify::Notice, "is not kept: saved in metres and degrees"});
}

LineFate fateOfName(const ZEL::ZelShape& shape) {
    const auto* const annotation = as<ZEL::Annotation>(shape);
    std::string name;
    shape.getName(name);
    return keptIf(!annotation || annotation->label() == name,
                  {halNotify::Warning, "is dropped, because the text counts"});
}

/// Of a point or another position, by the words of its coordinates.
LineFate fateOfPosition(const LineTokens& tokens, bool asDegrees) {
    const auto isRead = [&](std::size_t word, halCore::AngleKind kind) {
        return asDegrees ? ZEL::readFileDegrees(tokens[word], kind).has_value()
                         : ZEL::readFileNumber(tokens[word]).has_value();
    };
    if (!isRead(1, halCore::AngleKind::Latitude) || !isRead(2, halCore::AngleKind::Longitude))
        return kUnreadLine;
    return keptIf(tokens.count() == 3 || ZEL::readFileNumber(tokens[3]), kLevel);
}

LineFate fateOfCenter(const LineTokens& tokens, bool belongs, bool asDegrees) {
    if (tokens.count() < 3) return kKept;  // the reader's message
    return belongs ? fateOfPosition(tokens, asDegrees) : kUnusedLine;
}

/// A colour of two words is a name, whatever it looks like.
LineFate fateOfColor(const LineTokens& tokens) {
    return keptIf(tokens.count() != 2 || ZEL::isColorName(tokens[1]),
                  {halNotify::Warning, "names no color that is known, and means red"});
}

LineFate fateOfAttribute(P parameter, const LineTokens& tokens, const ZEL::ZelShape& shape) {
    const std::string_view value = tokens[1];
    const auto& units = shape.originalUnits();
    const bool relative = shape.isRelative();
    switch (parameter) {
        case P::LineColor:
            return fateOfColor(tokens);
        case P::FillColor:
            return as<ZEL::FillableShape>(shape) ? fateOfColor(tokens) : kUnusedLine;
        case P::LineWidth:
        case P::Filled:
            return keptIf(as<ZEL::FillableShape>(shape));
        case P::FontName:
        case P::FontSize:
            return keptIf(as<ZEL::Annotation>(shape));
        case P::CenterAbsolute:
        case P::CenterRelative:
            return fateOfCenter(tokens,
                                (as<ZEL::CircularShape>(shape) || as<ZEL::Annotation>(shape)) &&
                                    relative == (parameter == P::CenterRelative),
                                !relative);
        case P::Center2Absolute:
        case P::Center2Relative:
            return fateOfCenter(
                tokens, as<ZEL::Orbit>(shape) && relative == (parameter == P::Center2Relative), !relative);
        case P::ReferencePoint:
            if (!relative || tokens.count() < 3) return {halNotify::Notice, kUnusedLine.what};
            return fateOfPosition(tokens, true);
        case P::Radius:
            return fateOfRadius(value, shape);
        case P::AngleStart:
        case P::AngleEnd:
        case P::AngleSweep:
            return fateOfAngle(shape);
        case P::MajorAxis:
        case P::MinorAxis:
            if (!as<ZEL::EllipticalShape>(shape) && !as<ZEL::Ellipsoid>(shape)) return kUnusedLine;
            return fateOfLength(value);
        case P::Height:
            return fateOfHeight(shape);
        case P::AltitudeUnits:
            return fateOfUnits(units.altitudeUnits(), halCore::Units::METERS);
        case P::RangeUnits:
            return fateOfUnits(units.rangeUnits(), halCore::Units::METERS);
        case P::AngleUnits:
            return fateOfUnits(units.angleUnits(), halCore::Units::DEGREES);
        // What stands for the default is not lost.
        case P::LineStyle:
            return keptIf(value == "solid", kDropped);
        case P::Outline:
            return keptIf(UTILS::stringIsTrueToken(value), kDropped);
        case P::AltitudeMode:
        case P::TextOutlineThickness:
            return keptIf(value == "none", kDropped);
        case P::VerticalDatum:
            return keptIf(value == "wgs84", kDropped);
        case P::DepthBuffer:
            return keptIf(UTILS::stringIsTrueToken(value), kDropped);
        case P::Tessellate:
        case P::ExtrudeHeight:
            return keptIf(!UTILS::stringIsTrueToken(value) && tokens.count() == 2, kDropped);
        default:
            return kDropped;
    }
}

LineFate fateOfShape(const ZEL::ZelShape& shape) {
    switch (shape.shapeType()) {
        case ShapeType::Points:
            return {halNotify::Warning, "becomes a line through all of its points"};
        case ShapeType::LineSegs:
            return {halNotify::Warning, "becomes one line through all of its points"};
        default:
            return kKept;
    }
}

/// How many words a reader uses at most; it passes over the others.
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
            return 4;
        default:
            return std::size_t(-1);
    }
}

LineFate fateOfWords(const ZEL::Keyword& keyword, const LineTokens& tokens) {
    // "filled true" says nothing more than "filled".
    const bool emphatic =
        keyword.action == Action::Flag && tokens.count() == 2 && UTILS::stringIsTrueToken(tokens[1]);
    return keptIf(tokens.count() <= wordsUsed(keyword.action) || emphatic, kCut);
}

/// Of the keyword and its values, whatever stands behind them.
LineFate fateOfValues(const ZEL::Keyword& keyword, const LineTokens& tokens, const ZEL::ZelShape& shape) {
    switch (keyword.action) {
        case Action::Shape:
            return fateOfShape(shape);
        case Action::Flag:
        case Action::Value:
        case Action::QuietValue:
        case Action::RestOfLine:
        case Action::Color:
        case Action::AbsolutePosition:
        case Action::RelativePosition:
        case Action::ReferencePoint:
        case Action::Half:
        case Action::Double:
        case Action::Extrude:
            return fateOfAttribute(keyword.parameter, tokens, shape);
        case Action::ThreeD:
            return tokens.line().starts_with("3d name") ? fateOfName(shape) : kDropped;
        case Action::Scale:
        case Action::Orient:
            return kDropped;
        case Action::Ignore:
            return keptIf(keyword.text == "version");
        case Action::Unknown:
            // Every other unknown line has its message from the reader.
            return keptIf(!tokens.line().starts_with("rotate") && !tokens.line().starts_with("extrude"),
                          kDropped);
        case Action::Start:
        case Action::End:
        case Action::Comment:
        case Action::AnnotationText:
        case Action::Box:
        case Action::AbsolutePoint:
        case Action::GridPoint:
        case Action::RelativePoint:
            break;
    }
    return kKept;
}

}  // namespace

bool hasPoints(const ZEL::ZelShape& shape) {
    return as<ZEL::PointBasedShape>(shape) || as<ZEL::Points>(shape);
}

LineFate fateOfLine(const ZEL::Keyword& keyword, const LineTokens& tokens, const ZEL::ZelShape& shape) {
    const LineFate fate = fateOfValues(keyword, tokens, shape);
    if (!fate.isKept() && fate.severity <= halNotify::Warning) return fate;
    const LineFate words = fateOfWords(keyword, tokens);
    return words.isKept() ? fate : words;
}

LineFate fateOfPoint(const ZEL::Keyword& keyword, const LineTokens& tokens, bool asDegrees) {
    LineFate fate = kKept;
    if (keyword.action != Action::GridPoint)
        fate = fateOfPosition(tokens, asDegrees);
    else if (tokens.count() >= 3 && !ZEL::readFileNumber(tokens[2]))
        fate = kLevel;
    return fate.isKept() ? fateOfWords(keyword, tokens) : fate;
}

}  // namespace OverlayEditor
