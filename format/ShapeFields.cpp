#include "format/ShapeFields.h"

#include <sstream>
#include <string_view>
#include <utility>

#include "common/NumberText.h"
#include "format/BlockLines.h"
#include "format/Keyword.h"
#include "format/LengthScale.h"
#include "format/LineTokens.h"
#include "format/ShapeCast.h"
#include "geo/Angles.h"

namespace halCore::ZEL {
namespace {

using Action = KeywordAction;
using P = ShapeParameter;

/// The slot of a written line, kNoSlot for what no editor changes.
int slotOfWritten(const Keyword& keyword, std::string_view line) {
    switch (keyword.parameter) {
        case P::CenterRelative:
            return slotOf(P::CenterAbsolute);
        case P::Center2Relative:
            return slotOf(P::Center2Absolute);
        case P::Name:
            if (line.starts_with("3d offsetcourse ")) return slotOf(P::OffsetCourse);
            return line.starts_with("3d name ") ? slotOf(P::Name) : kNoSlot;
        case P::Absolute:
            if (keyword.action == Action::Shape) return kShapeSlot;
            return keyword.action == Action::AbsolutePoint || keyword.action == Action::RelativePoint
                       ? kPointSlot
                       : kNoSlot;
        case P::AnnotationText:
        case P::Draw:
        case P::CenterAbsolute:
        case P::Center2Absolute:
        case P::ReferencePoint:
        case P::Radius:
        case P::MajorAxis:
        case P::MinorAxis:
        case P::Height:
        case P::AngleStart:
        case P::AngleSweep:
        case P::LineColor:
        case P::LineWidth:
        case P::Filled:
        case P::FillColor:
        case P::FontName:
        case P::FontSize:
            return slotOf(keyword.parameter);
        default:
            return kNoSlot;
    }
}

std::string textOf(const ZelShape& shape) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out.precision(UTILS::kSignificantDigits);
    shape.serializeToStream(out);
    return std::move(out).str();
}

ShapeFields fieldsOfText(std::string_view text) {
    ShapeFields fields;
    LineTokens tokens;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(line.size() + 1);
        if (line.starts_with('#') || line.starts_with('/')) continue;
        tokens.split(line, LineTokens::Case::Keep);
        const Keyword& keyword = findKeyword(tokens[0]);
        const int slot = slotOfWritten(keyword, line);
        if (slot == kNoSlot || keyword.action == Action::Comment) continue;
        ShapeField field{std::string(tokens[0]), {}};
        if (slot == slotOf(P::Name)) {
            field = {"3d name", {std::string(tokens.from(2))}};
        } else if (slot == slotOf(P::OffsetCourse)) {
            field = {"3d offsetcourse", {std::string(tokens.from(2))}};
        } else if (slot == slotOf(P::AnnotationText)) {
            field.values.emplace_back(tokens.from(1));
        } else {
            for (std::size_t i = 1; i < tokens.count(); ++i) field.values.emplace_back(tokens[i]);
        }
        fields[slot] = std::move(field);
    }
    return fields;
}

}  // namespace

std::string ShapeField::line() const {
    std::string line = keyword;
    for (const std::string& value : values) line.append(" ").append(value);
    return line;
}

const std::vector<Vec3>* pointsOf(const ZelShape& shape) {
    if (const auto* list = shapeAs<PointBasedShape>(shape)) return &list->points();
    if (const auto* points = shapeAs<Points>(shape)) return &points->points();
    return nullptr;
}

std::vector<Vec3>* pointsOf(ZelShape& shape) {
    return const_cast<std::vector<Vec3>*>(pointsOf(std::as_const(shape)));
}

std::optional<Vec3> anchorOf(const ZelShape& shape) {
    Vec3 anchor;
    const auto* const round = shapeAs<CircularShape>(shape);
    const auto* const label = shapeAs<Annotation>(shape);
    const bool named =
        (round && round->getCenterPosition(anchor) == 0) || (label && label->getPosition(anchor) == 0);
    return named ? std::optional(anchor) : std::nullopt;
}

bool isPlaceless(const ZelShape& shape) {
    const bool canLack =
        shape.shapeType() == ShapeType::Annotation || shapeAs<CircularShape>(shape) != nullptr;
    return !shape.isRelative() && canLack && !anchorOf(shape);
}

ShapeFields fieldsOf(ZelShape& shape) {
    std::vector<Vec3> none;
    std::vector<Vec3>* const list = pointsOf(shape);
    if (list) std::swap(*list, none);
    const std::string text = textOf(shape);
    if (list) std::swap(*list, none);
    return fieldsOfText(text);
}

ShapeField pointField(const ZelShape& shape, const Vec3& point) {
    const auto number = [](double value) { return UTILS::writeNumber(value); };
    const LengthScale altitude(shape.originalUnits().altitudeUnits());
    const std::string up = number(altitude.fromMetres(point.z()));
    if (!shape.isRelative())
        return {"lla",
                {number(point.lat() * kDegreesPerRadian), number(point.lon() * kDegreesPerRadian), up}};
    const LengthScale range(shape.originalUnits().rangeUnits());
    return {"xyz", {number(range.fromMetres(point.x())), number(range.fromMetres(point.y())), up}};
}

}  // namespace halCore::ZEL
