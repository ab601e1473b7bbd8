#include "model/LossReport.h"

#include <algorithm>

#include "common/Strings.h"
#include "format/FileNumber.h"
#include "format/Keyword.h"
#include "format/LineTokens.h"
#include "format/PlainPoint.h"
#include "format/ZelShapes.h"
#include "geo/Units.h"
#include "model/ShapeLabel.h"
#include "model/ZelToSerializer.h"

namespace OverlayEditor {
namespace {

namespace ZEL = halCore::ZEL;
using Action = ZEL::KeywordAction;
using P = ZEL::ShapeParameter;
using ZEL::ShapeType;

/// What becomes of a line. Empty texts: it is kept.
struct Fate {
    halNotify::Severity severity = halNotify::Warning;
    /// Follows the line's text in the message.
    std::string_view what;
};

constexpr Fate kKept{};
constexpr Fate kDropped{halNotify::Warning, "is dropped"};
constexpr Fate kUnused{halNotify::Warning, "means nothing here and is dropped"};

constexpr Fate keptIf(bool kept, const Fate& otherwise = kUnused) {
    return kept ? kKept : otherwise;
}

template <typename Kind>
const Kind* as(const ZEL::ZelShape& shape) {
    return dynamic_cast<const Kind*>(&shape);
}

bool isSet(int getterResult) {
    return getterResult == 0;
}

bool hasPoints(const ZEL::ZelShape& shape) {
    return as<ZEL::PointBasedShape>(shape) || as<ZEL::Points>(shape);
}

template <typename Shape>
bool hasBothAxes(const Shape& shape) {
    double metres = 0.0;
    return isSet(shape.getMajorAxis(metres)) && isSet(shape.getMinorAxis(metres));
}

Fate fateOfRadius(const ZEL::ZelShape& shape) {
    constexpr Fate axesCount{halNotify::Warning, "is dropped, because the axes count"};
    if (const auto* const ellipse = as<ZEL::EllipticalShape>(shape))
        return keptIf(!hasBothAxes(*ellipse), axesCount);
    if (const auto* const ellipsoid = as<ZEL::Ellipsoid>(shape))
        return keptIf(!hasBothAxes(*ellipsoid), axesCount);
    return keptIf(as<ZEL::CircularShape>(shape));
}

Fate fateOfAngle(const ZEL::ZelShape& shape) {
    const auto* const ellipse = as<ZEL::EllipticalShape>(shape);
    if (!ellipse) return kUnused;
    double sweep = 0.0;
    if (!isSet(ellipse->getAngleSweep(sweep))) return {halNotify::Warning, "is dropped without a sweep"};
    if (const auto* const cylinder = as<ZEL::Cylinder>(shape)) return keptIf(isWedge(*cylinder), kDropped);
    return kKept;
}

Fate fateOfHeight(const ZEL::ZelShape& shape) {
    double height = 0.0;
    if (const auto* const ellipsoid = as<ZEL::Ellipsoid>(shape)) {
        ellipsoid->getHeight(height);
        return keptIf(height >= 0.0, {halNotify::Warning, "is saved as 1 m"});
    }
    return keptIf(as<ZEL::Cylinder>(shape) || as<ZEL::Cone>(shape));
}

Fate fateOfUnits(const halCore::Units& units, const halCore::Units& saved) {
    return keptIf(units == saved, {halNotify::Notice, "is not kept: saved in metres and degrees"});
}

Fate fateOfName(const ZEL::ZelShape& shape) {
    const auto* const annotation = as<ZEL::Annotation>(shape);
    std::string name;
    shape.getName(name);
    return keptIf(!annotation || annotation->label() == name,
                  {halNotify::Warning, "is dropped, because the text counts"});
}

/// Attributes; `value` is the line's second word.
Fate fateOfAttribute(P parameter, std::string_view value, const ZEL::ZelShape& shape) {
    const auto& units = shape.originalUnits();
    switch (parameter) {
        case P::LineColor:
            return kKept;
        case P::LineWidth:
        case P::FillColor:
        case P::Filled:
            return keptIf(as<ZEL::FillableShape>(shape));
        case P::FontName:
        case P::FontSize:
            return keptIf(as<ZEL::Annotation>(shape));
        case P::CenterAbsolute:
        case P::CenterRelative:
            return keptIf((as<ZEL::CircularShape>(shape) || as<ZEL::Annotation>(shape)) &&
                          shape.isRelative() == (parameter == P::CenterRelative));
        case P::Center2Absolute:
        case P::Center2Relative:
            return keptIf(as<ZEL::Orbit>(shape) && shape.isRelative() == (parameter == P::Center2Relative));
        case P::ReferencePoint:
            return {halNotify::Notice, shape.isRelative() ? "is used up: the positions keep their places"
                                                          : "means nothing here and is dropped"};
        case P::Radius:
            return fateOfRadius(shape);
        case P::AngleStart:
        case P::AngleEnd:
        case P::AngleSweep:
            return fateOfAngle(shape);
        case P::MajorAxis:
        case P::MinorAxis:
            return keptIf(as<ZEL::EllipticalShape>(shape) || as<ZEL::Ellipsoid>(shape));
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
        case P::Tessellate:
        case P::ExtrudeHeight:
            return keptIf(!UTILS::stringIsTrueToken(value), kDropped);
        default:
            return kDropped;
    }
}

/// Of a point that belongs to the shape. The reader passes over one that is no position without a message.
Fate fateOfPoint(const ZEL::LineTokens& tokens, const ZEL::ZelShape& shape) {
    if (tokens.count() < 3) return kKept;  // the reader's message
    const auto isRead = [&](std::size_t word, halCore::AngleKind kind) {
        return shape.isRelative() ? ZEL::readFileNumber(tokens[word]).has_value()
                                  : ZEL::readFileDegrees(tokens[word], kind).has_value();
    };
    if (!isRead(1, halCore::AngleKind::Latitude) || !isRead(2, halCore::AngleKind::Longitude))
        return {halNotify::Warning, "cannot be read and is dropped"};
    return keptIf(tokens.count() == 3 || ZEL::readFileNumber(tokens[3]),
                  {halNotify::Warning, "loses its altitude, which cannot be read"});
}

Fate fateOfShape(const ZEL::ZelShape& shape) {
    switch (shape.shapeType()) {
        case ShapeType::Points:
            return {halNotify::Warning, "becomes a line through all of its points"};
        case ShapeType::LineSegs:
            return {halNotify::Warning, "becomes one line through all of its points"};
        default:
            return kKept;
    }
}

Fate fateOf(const ZEL::Keyword& keyword, const ZEL::LineTokens& tokens, const ZEL::ZelShape& shape) {
    switch (keyword.action) {
        case Action::Shape:
            return fateOfShape(shape);
        case Action::AbsolutePoint:
        case Action::GridPoint:
        case Action::RelativePoint:
            if ((!hasPoints(shape) && !as<ZEL::Annotation>(shape)) ||
                shape.isRelative() != (keyword.action == Action::RelativePoint))
                return kUnused;
            return keyword.action == Action::GridPoint ? kKept : fateOfPoint(tokens, shape);
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
            return fateOfAttribute(keyword.parameter, tokens[1], shape);
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
            break;
    }
    return kKept;
}

/// Goes through a text line by line as the reader does.
class Walk {
  public:
    Walk(const ZEL::Parser::Shapes& shapes, const ZEL::ParseReport& report,
         std::span<const std::string> reasons, std::vector<ZEL::ParseMessage>& losses)
        : shapes_(shapes), report_(report), reasons_(reasons), losses_(losses) {}

    void lines(std::string_view text) {
        end_ = text.data() + text.size();
        constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
        if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
        while (!text.empty()) {
            const std::size_t length = std::min(text.find('\n'), text.size());
            ++number_;
            line_(UTILS::trimmed(text.substr(0, length)));
            text.remove_prefix(std::min(length + 1, text.size()));
        }
    }

  private:
    void line_(std::string_view line) {
        if (line.empty()) return;
        if (inside_ && plainPoint_(line)) return;
        if (line.front() == '#' || line.front() == '/') {
            comment_(line);
            return;
        }
        tokens_.split(line);
        const ZEL::Keyword& keyword = ZEL::findKeyword(tokens_[0]);
        if (keyword.action == Action::Comment) {
            comment_(line);
        } else if (keyword.action == Action::End) {
            inside_ = false;
        } else if (!inside_) {
            if (keyword.action == Action::Start) start_();
        } else if (shape_) {
            const Fate fate = fateOf(keyword, tokens_, *shape_);
            if (!fate.what.empty()) add_(fate.severity, tokens_.line(), fate.what);
        }
    }

    void start_() {
        inside_ = true;
        shape_ = nullptr;
        if (next_ == shapes_.size() || report_.shapeLines[next_] != number_) return;
        shape_ = shapes_[next_].get();
        label_ = labelOf(*shape_);
        pointsTaken_ = hasPoints(*shape_);
        if (const std::string& reason = reasons_[next_]; !reason.empty()) {
            losses_.push_back({number_, halNotify::Warning, "the " + label_ + " is not saved: " + reason});
            shape_ = nullptr;
        }
        ++next_;
    }

    /// The lines that a large file consists of.
    bool plainPoint_(std::string_view line) const {
        if (!shape_) return line.starts_with("lla ") || line.starts_with("xyz ");
        if (!pointsTaken_ || !line.starts_with(shape_->isRelative() ? "xyz " : "lla ")) return false;
        constexpr std::ptrdiff_t window = 80;
        const char* const numbers = line.data() + 3;
        halCore::Vec3 point;
        return end_ - numbers >= window && ZEL::readPlainPoint(numbers, point);
    }

    void comment_(std::string_view line) {
        if (!inside_)
            losses_.push_back(
                {number_, halNotify::Warning, "the comment \"" + UTILS::excerpt(line) + "\" is dropped"});
        else if (shape_)
            add_(halNotify::Warning, line, "is dropped");
    }

    void add_(halNotify::Severity severity, std::string_view line, std::string_view what) {
        losses_.push_back({number_, severity, label_ + ": \"" + UTILS::excerpt(line) + "\" "});
        losses_.back().text += what;
    }

    const ZEL::Parser::Shapes& shapes_;
    const ZEL::ParseReport& report_;
    std::span<const std::string> reasons_;
    std::vector<ZEL::ParseMessage>& losses_;
    ZEL::LineTokens tokens_;
    const char* end_ = nullptr;
    std::size_t number_ = 0;
    std::size_t next_ = 0;
    bool inside_ = false;
    /// Of the block that is open; null when all of it is gone.
    const ZEL::ZelShape* shape_ = nullptr;
    std::string label_;
    bool pointsTaken_ = false;
};

}  // namespace

std::vector<ZEL::ParseMessage> lossReport(std::string_view text, const ZEL::Parser::Shapes& shapes,
                                          const ZEL::ParseReport& report,
                                          std::span<const std::string> reasons) {
    std::vector<ZEL::ParseMessage> losses = report.messages;
    Walk(shapes, report, reasons, losses).lines(text);
    std::stable_sort(losses.begin(), losses.end(),
                     [](const auto& a, const auto& b) { return a.line < b.line; });
    return losses;
}

bool losesAnything(std::span<const ZEL::ParseMessage> losses) {
    return std::any_of(losses.begin(), losses.end(),
                       [](const auto& loss) { return loss.severity <= halNotify::Warning; });
}

}  // namespace OverlayEditor
