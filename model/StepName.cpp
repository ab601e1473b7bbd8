#include "model/StepName.h"

#include "model/CylinderShape.h"

namespace OverlayEditor {

namespace {

/// Of a list of points: what became of it.
const char* pointsName(const SharedPoints& before, const SharedPoints& after) {
    if (before.size() == 0) return "draw ";
    if (after.size() > before.size())
        return after.size() == before.size() + 1 ? "add a point to " : "add points to ";
    if (after.size() < before.size())
        return after.size() + 1 == before.size() ? "remove a point of " : "remove points of ";
    const auto common = after.commonWith(before);
    return common.front + common.back + 1 >= after.size() ? "move a point of " : "move ";
}

const char* roundName(const ShapeState& before, const ShapeState& after) {
    const RoundState& was = *std::get<Shared<RoundState>>(before.own);
    const RoundState& is = *std::get<Shared<RoundState>>(after.own);
    const bool moved = !(before.positions == after.positions);
    if (moved && before.positions.given.size() == 0) return "draw ";
    const auto differs = [&](CylinderShape::EditPoint role) {
        const auto i = static_cast<std::size_t>(role);
        const auto number = [i](const RoundState& state) {
            if (state.marks[i]) return std::optional(state.marks[i]->number);
            return state.numbers[i] ? std::optional(state.numbers[i]->value) : std::nullopt;
        };
        return number(was) != number(is);
    };
    using enum CylinderShape::EditPoint;
    const bool sized = differs(MajorAxis) || differs(MinorAxis) || differs(Height);
    if (!sized && differs(StartAngle) && differs(EndAngle)) return "turn ";
    if (sized || differs(StartAngle) || differs(EndAngle)) return "change the size of ";
    if (before.source.extras != after.source.extras) return "turn ";
    return moved ? "move " : "move a point of ";
}

const char* formName(const ShapeState& before, const ShapeState& after) {
    if (std::holds_alternative<Shared<RoundState>>(after.own)) return roundName(before, after);
    if (const auto* const drawn = std::get_if<Shared<FreeDrawState>>(&after.own)) {
        const FreeDrawState& was = *std::get<Shared<FreeDrawState>>(before.own);
        return was.points == (*drawn)->points ? "change " : pointsName(was.points, (*drawn)->points);
    }
    if (std::holds_alternative<LabelState>(after.own))
        return before.positions == after.positions ? "change the look of " : "move ";
    if (const auto* const size = std::get_if<RectangleState>(&after.own)) {
        if (before.positions.given.size() < 2) return "draw ";
        const auto& was = std::get<RectangleState>(before.own).size;
        return size->size && was != size->size ? "change the size of "
                                               : pointsName(before.positions.given, after.positions.given);
    }
    return pointsName(before.positions.given, after.positions.given);
}

}  // namespace

std::string stepName(const ShapeState* before, const ShapeState* after) {
    if (!before) return "add " + after->name;
    if (!after) return "delete " + before->name;
    if (before->name != after->name) return "rename " + before->name + " to " + after->name;
    const char* what = "change ";
    if (!(before->positions == after->positions) || before->own != after->own ||
        before->source.extras != after->source.extras)
        what = formName(*before, *after);
    else if (before->shown != after->shown)
        what = after->shown ? "show " : "hide ";
    else if (before->lineColor != after->lineColor || before->fillColor != after->fillColor)
        what = "color ";
    else if (before->filled != after->filled)
        what = after->filled ? "fill " : "empty ";
    else if (before->lineWidth != after->lineWidth)
        what = "change the line width of ";
    return what + after->name;
}

}  // namespace OverlayEditor
