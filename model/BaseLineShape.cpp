#include "model/BaseLineShape.h"

#include <cmath>
#include <limits>

#include "model/ColorBytes.h"
#include "model/ShapeState.h"

namespace OverlayEditor {

int BaseLineShape::serialize(Serializer& serializer) {
    const ColorBytes color(lineColor_);
    serializer.setItemName(name());
    serializer.setLineWidth(lineWidth_);
    serializer.setLineColor(color.r, color.g, color.b, color.a);
    return 0;
}

void BaseLineShape::setLineWidth(double pixels) {
    // What does not fit the integer has no meaning as a width either; keep the nearest that does.
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan(pixels)) pixels = 0.0;
    if (pixels >= Limits::max())
        lineWidth_ = Limits::max();
    else if (pixels <= Limits::min())
        lineWidth_ = Limits::min();
    else
        lineWidth_ = static_cast<std::int32_t>(pixels);
    dirty_();
}

void BaseLineShape::setLineColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) {
    lineColor_ = ColorBytes{r, g, b, a}.packed();
    dirty_();
}

void BaseLineShape::showLine_(LineStyleGUI& gui) const {
    gui.setColor(lineColor_);
    gui.setWidth(lineWidth_);
}

void BaseLineShape::saveState_(ShapeState& state, const ShapeState* like) const {
    Shape::saveState_(state, like);
    state.lineColor = lineColor_;
    state.lineWidth = lineWidth_;
}

void BaseLineShape::takeState_(const ShapeState& state) {
    lineColor_ = state.lineColor;
    lineWidth_ = state.lineWidth;
}

bool BaseLineShape::lineDiffers_(const LineStyleGUI& gui) const {
    return gui.color() != lineColor_ || gui.width() != lineWidth_;
}

void BaseLineShape::setLineFromGui(const LineStyleGUI& gui) {
    const ColorBytes color(gui.color());
    const int width = gui.width();
    if (color.packed() != lineColor_) setLineColor(color.r, color.g, color.b, color.a);
    if (width != lineWidth_) setLineWidth(width);
}

}  // namespace OverlayEditor
