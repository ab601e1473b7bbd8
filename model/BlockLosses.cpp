#include "model/BlockLosses.h"

#include <optional>

#include "common/Strings.h"
#include "format/ZelShapes.h"
#include "geo/Mgrs.h"
#include "model/ShapeLabel.h"

namespace OverlayEditor {
namespace {

namespace ZEL = halCore::ZEL;
using Action = ZEL::KeywordAction;
using P = ZEL::ShapeParameter;
using PointType = BlockLosses::PointType;

/// The kind of point that a line gives to the reader, None for one that gives none.
PointType pointOf(const ZEL::Keyword& keyword, const ZEL::LineTokens& tokens) {
    double lat = 0.0;
    double lon = 0.0;
    switch (keyword.action) {
        case Action::AbsolutePoint:
            return tokens.count() >= 3 ? PointType::Absolute : PointType::None;
        case Action::RelativePoint:
            return tokens.count() >= 3 ? PointType::Relative : PointType::None;
        case Action::GridPoint:
            return halCore::Mgrs::convertMgrsToGeodetic(tokens[1], lat, lon) == 0 ? PointType::Absolute
                                                                                  : PointType::None;
        default:
            return PointType::None;
    }
}

/// The attribute that a line sets, when it does.
std::optional<P> attributeOf(const ZEL::Keyword& keyword, const ZEL::LineTokens& tokens) {
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
        case Action::ThreeD:
            return when(words >= 3 && tokens.line().starts_with("3d name"));
        case Action::AnnotationText:
            return P::Name;
        default:
            return std::nullopt;
    }
}

}  // namespace

void BlockLosses::start(const ZEL::ZelShape& shape) {
    shape_ = &shape;
    label_ = labelOf(shape);
    takesPoints_ = hasPoints(shape);
    isLabel_ = shape.shapeType() == ZEL::ShapeType::Annotation;
    pointType_ = PointType::None;
    labelPoint_ = 0;
    attributes_.clear();
    setBy_.fill(0);
}

void BlockLosses::comment(std::size_t number, std::string_view line) {
    add_(number, {halNotify::Warning, "is dropped"}, line);
}

void BlockLosses::line(std::size_t number, std::string_view line, const ZEL::Keyword& keyword,
                       const ZEL::LineTokens& tokens) {
    if (const PointType type = pointOf(keyword, tokens); type != PointType::None) {
        point_(number, type, keyword, tokens);
        return;
    }
    attributes_.push_back({number, line, &keyword});
    if (const auto parameter = attributeOf(keyword, tokens))
        setBy_[static_cast<std::size_t>(*parameter)] = attributes_.size();
}

void BlockLosses::point_(std::size_t number, PointType type, const ZEL::Keyword& keyword,
                         const ZEL::LineTokens& tokens) {
    const bool first = pointType_ == PointType::None;
    if (first) pointType_ = type;
    if (isLabel_ && labelPoint_ != 0 && type == pointType_) {
        addReplaced_(number, tokens.line(), labelPoint_);
        return;
    }
    if (type != pointType_ || (!takesPoints_ && !(isLabel_ && first))) {
        add_(number, kUnusedLine, tokens.line());
        return;
    }
    // In a list that a centre makes absolute, offsets count as degrees.
    const bool asDegrees = isLabel_ ? type == PointType::Absolute : !shape_->isRelative();
    const LineFate fate = fateOfPoint(keyword, tokens, asDegrees);
    add_(number, fate, tokens.line());
    if (isLabel_ && fate.what != kUnreadLine.what) labelPoint_ = number;
}

std::size_t BlockLosses::lineThatCounts_(const Attribute& attribute, const ZEL::LineTokens& tokens) const {
    const auto setter = [this](P parameter) -> const Attribute* {
        const std::size_t last = setBy_[static_cast<std::size_t>(parameter)];
        return last != 0 ? &attributes_[last - 1] : nullptr;
    };
    const auto parameter = attributeOf(*attribute.keyword, tokens);
    if (!parameter || attribute.keyword->action == Action::AnnotationText) return attribute.number;
    if (isLabel_ && labelPoint_ != 0 && (*parameter == P::CenterAbsolute || *parameter == P::CenterRelative))
        return labelPoint_;
    if (const Attribute* const sweep = setter(P::AngleSweep); sweep && *parameter == P::AngleEnd)
        return sweep->number;
    const Attribute* const last = setter(*parameter);
    if (*parameter == P::Name) {
        std::string name;
        shape_->getName(name);
        if (name == tokens.from(2)) return attribute.number;
    }
    return last->line == attribute.line ? attribute.number : last->number;
}

void BlockLosses::finish() {
    for (const Attribute& attribute : attributes_) {
        tokens_.split(attribute.line);
        const LineFate fate = fateOfLine(*attribute.keyword, tokens_, *shape_);
        const std::size_t counts = lineThatCounts_(attribute, tokens_);
        if (counts != attribute.number && (fate.isKept() || fate.severity > halNotify::Warning))
            addReplaced_(attribute.number, tokens_.line(), counts);
        else
            add_(attribute.number, fate, tokens_.line());
    }
    shape_ = nullptr;
}

void BlockLosses::add_(std::size_t number, const LineFate& fate, std::string_view line) {
    if (fate.isKept()) return;
    losses_.push_back({number, fate.severity, label_ + ": \"" + UTILS::excerpt(line) + "\" "});
    losses_.back().text += fate.what;
}

void BlockLosses::addReplaced_(std::size_t number, std::string_view line, std::size_t by) {
    add_(number, {halNotify::Warning, "is dropped, because line "}, line);
    losses_.back().text += std::to_string(by) + " counts";
}

}  // namespace OverlayEditor
