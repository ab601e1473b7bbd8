#include "model/BaseFilledShape.h"

#include "model/ColorBytes.h"
#include "model/ShapeState.h"

namespace OverlayEditor {

BaseFilledShape::BaseFilledShape(const BaseFilledShape& other)
    : BaseLineShape(other), fillColor_(other.fillColor_), filled_(other.filled_) {}

int BaseFilledShape::serialize(Serializer& serializer) {
    BaseLineShape::serialize(serializer);
    const ColorBytes color(fillColor_);
    serializer.setFillColor(color.r, color.g, color.b, color.a);
    serializer.setFilled(filled_);
    return 0;
}

void BaseFilledShape::setFilled(bool filled) {
    filled_ = filled;
    dirty_();
}

void BaseFilledShape::setFillColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) {
    fillColor_ = ColorBytes{r, g, b, a}.packed();
    dirty_();
}

void BaseFilledShape::setOutlined(bool outlined) {
    outlined_ = outlined;
    dirty_();
}

void BaseFilledShape::showStyles_(LineStyleGUI& line, FillStyleGUI& fill) const {
    showLine_(line);
    fill.setFilled(filled_);
    fill.setColor(fillColor_);
}

void BaseFilledShape::takeStyles_(const LineStyleGUI& line, const FillStyleGUI& fill) {
    if (lineDiffers_(line))
        setLineFromGui(line);
    else
        setFillFromGui(fill);
}

void BaseFilledShape::saveState_(ShapeState& state, const ShapeState* like) const {
    BaseLineShape::saveState_(state, like);
    state.fillColor = fillColor_;
    state.filled = filled_;
}

void BaseFilledShape::takeState_(const ShapeState& state) {
    BaseLineShape::takeState_(state);
    fillColor_ = state.fillColor;
    filled_ = state.filled;
}

void BaseFilledShape::setFillFromGui(const FillStyleGUI& gui) {
    const bool filled = gui.filled();
    const ColorBytes color(gui.color());
    if (filled != filled_) setFilled(filled);
    if (color.packed() != fillColor_) setFillColor(color.r, color.g, color.b, color.a);
}

}  // namespace OverlayEditor
