#include "model/ShapeCopies.h"

namespace OverlayEditor {

namespace {

bool hasFill(const ShapeState& state) {
    return state.kind != ShapeKind::FreeDraw && state.kind != ShapeKind::Text;
}

}  // namespace

std::unique_ptr<Shape> copyOf(const Shape& shape, const std::string& name) {
    std::unique_ptr<Shape> copy(shape.clone());
    ShapeSource source;
    source.extras = shape.source().extras;
    copy->setSource(std::move(source));
    copy->setName(name);
    return copy;
}

std::string nameWithoutNumber(const std::string& name) {
    const std::size_t last = name.find_last_not_of("0123456789");
    const bool isNumbered =
        last != std::string::npos && last > 0 && last + 1 < name.size() && name[last] == ' ';
    return isNumbered ? name.substr(0, last) : name;
}

void takeStyle(ShapeState& state, const ShapeState& from) {
    const auto* const fromLabel = std::get_if<LabelState>(&from.own);
    auto* const label = std::get_if<LabelState>(&state.own);
    (label ? label->color : state.lineColor) = fromLabel ? fromLabel->color : from.lineColor;
    if (label && fromLabel) *label = *fromLabel;
    if (!label && !fromLabel) state.lineWidth = from.lineWidth;
    if (!hasFill(state) || !hasFill(from)) return;
    state.filled = from.filled;
    state.fillColor = from.fillColor;
}

}  // namespace OverlayEditor
