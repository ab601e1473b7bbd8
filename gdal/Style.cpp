#include "gdal/Style.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <optional>

#include <ogr_featurestyle.h>

#include "format/ZelShapes.h"
#include "gdal/ColorText.h"
#include "gdal/FeatureColumns.h"

namespace exchange {

namespace ZEL = halCore::ZEL;

namespace {

std::string quoted(const std::string& text) {
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') out += '\\';
        out += c;
    }
    return out += '"';
}

std::string pen(const ZEL::FillableShape& shape) {
    ZEL::Color color;
    shape.getLineColor(color);
    int width = 1;
    shape.getLineWidth(width);
    ZEL::LineStyle style = ZEL::LineStyle::Solid;
    shape.getLineStyle(style);
    std::string text = "PEN(c:";
    text.append(textOfColor(color)).append(",w:").append(std::to_string(width)).append("px");
    if (style == ZEL::LineStyle::Dashed) text.append(",p:\"8px 6px\"");
    if (style == ZEL::LineStyle::Dotted) text.append(",p:\"2px 4px\"");
    return text += ')';
}

std::string fillableStyle(const ZEL::FillableShape& shape) {
    bool outlined = true;
    bool filled = false;
    shape.getOutlined(outlined);
    shape.getFilled(filled);
    ZEL::Color fill;
    shape.getFillColor(fill);
    std::string text = filled ? "BRUSH(fc:" + textOfColor(fill) + ")" : std::string();
    if (outlined || !filled) text.append(text.empty() ? "" : ";").append(pen(shape));
    return text;
}

std::string labelStyle(const ZEL::Annotation& shape) {
    std::string font;
    shape.getFontName(font);
    int size = 15;
    shape.getTextSize(size);
    ZEL::Color color;
    shape.getTextColor(color);
    ZEL::Color halo;
    shape.getOutlineColor(halo);
    ZEL::OutlineThickness thickness = ZEL::OutlineThickness::None;
    shape.getOutlineThickness(thickness);
    std::string text = "LABEL(f:";
    text.append(quoted(utf8(font.substr(0, font.rfind('.'))))).append(",s:").append(std::to_string(size));
    text.append("px,t:").append(quoted(utf8(shape.label()))).append(",c:").append(textOfColor(color));
    if (thickness != ZEL::OutlineThickness::None) text.append(",o:").append(textOfColor(halo));
    return text += ')';
}

std::string pointStyle(const ZEL::Points& shape) {
    ZEL::Color color;
    shape.getColor(color);
    int size = 1;
    shape.getPointSize(size);
    return std::string("SYMBOL(id:\"ogr-sym-3\",c:")
        .append(textOfColor(color))
        .append(",s:")
        .append(std::to_string(size))
        .append("px)");
}

/// The parts of a style string, in pixels.
class Tools {
  public:
    explicit Tools(const char* style) {
        if (!style || !manager_.InitStyleString(style)) return;
        for (int i = 0; i < manager_.GetPartCount(); ++i) {
            std::unique_ptr<OGRStyleTool> tool(manager_.GetPart(i));
            if (!tool) continue;
            tool->SetUnit(OGRSTUPixel);
            switch (tool->GetType()) {
                case OGRSTCPen:
                    pen.reset(static_cast<OGRStylePen*>(tool.release()));
                    break;
                case OGRSTCBrush:
                    brush.reset(static_cast<OGRStyleBrush*>(tool.release()));
                    break;
                case OGRSTCSymbol:
                    symbol.reset(static_cast<OGRStyleSymbol*>(tool.release()));
                    break;
                case OGRSTCLabel:
                    label.reset(static_cast<OGRStyleLabel*>(tool.release()));
                    break;
                default:
                    break;
            }
        }
    }

    std::unique_ptr<OGRStylePen> pen;
    std::unique_ptr<OGRStyleBrush> brush;
    std::unique_ptr<OGRStyleSymbol> symbol;
    std::unique_ptr<OGRStyleLabel> label;

  private:
    OGRStyleMgr manager_;
};

std::optional<ZEL::Color> colorOf(const char* text, GBool isDefault) {
    int red = 0;
    int green = 0;
    int blue = 0;
    int alpha = 255;
    if (isDefault || !text || !OGRStyleTool::GetRGBFromString(text, red, green, blue, alpha))
        return std::nullopt;
    return ZEL::Color(static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                      static_cast<std::uint8_t>(blue), static_cast<std::uint8_t>(alpha));
}

int pixels(double size) {
    return static_cast<int>(std::lround(std::clamp(size, 1.0, 1000.0)));
}

/// Sets a value that the shape has not got.
template <typename Shape, typename T>
void fill(Shape& shape, int (Shape::*get)(T&) const, void (Shape::*set)(T), const std::optional<T>& value) {
    T old{};
    if (value && (shape.*get)(old) != 0) (shape.*set)(*value);
}
template <typename Shape, typename T>
void fill(Shape& shape, int (Shape::*get)(T&) const, void (Shape::*set)(const T&),
          const std::optional<T>& value) {
    T old{};
    if (value && (shape.*get)(old) != 0) (shape.*set)(*value);
}

void applyToFillable(const Tools& tools, ZEL::FillableShape& shape) {
    using ZEL::FillableShape;
    GBool none = FALSE;
    if (tools.pen) {
        const char* const color = tools.pen->Color(none);
        fill(shape, &FillableShape::getLineColor, &FillableShape::setLineColor, colorOf(color, none));
        const double width = tools.pen->Width(none);
        if (!none)
            fill(shape, &FillableShape::getLineWidth, &FillableShape::setLineWidth,
                 std::optional(pixels(width)));
        const char* const pattern = tools.pen->Pattern(none);
        if (!none && pattern && *pattern != '\0')
            fill(shape, &FillableShape::getLineStyle, &FillableShape::setLineStyle,
                 std::optional(std::atof(pattern) <= 3.0 ? ZEL::LineStyle::Dotted : ZEL::LineStyle::Dashed));
    }
    if (tools.brush) {
        const char* const text = tools.brush->ForeColor(none);
        const std::optional<ZEL::Color> color = colorOf(text, none);
        fill(shape, &FillableShape::getFillColor, &FillableShape::setFillColor, color);
        if (color && color->alpha() != 0)
            fill(shape, &FillableShape::getFilled, &FillableShape::setFilled, std::optional(true));
    }
}

void applyToLabel(const Tools& tools, ZEL::Annotation& shape) {
    using ZEL::Annotation;
    if (!tools.label) return;
    GBool none = FALSE;
    const char* color = tools.label->ForeColor(none);
    fill(shape, &Annotation::getTextColor, &Annotation::setTextColor, colorOf(color, none));
    color = tools.label->OutlineColor(none);
    if (const auto halo = colorOf(color, none)) {
        fill(shape, &Annotation::getOutlineColor, &Annotation::setOutlineColor, halo);
        fill(shape, &Annotation::getOutlineThickness, &Annotation::setOutlineThickness,
             std::optional(ZEL::OutlineThickness::Thin));
    }
    const double size = tools.label->Size(none);
    if (!none && size > 0.0)
        fill(shape, &Annotation::getTextSize, &Annotation::setTextSize, std::optional(pixels(size)));
}

}  // namespace

std::string styleOf(const ZEL::ZelShape& shape) {
    switch (shape.shapeType()) {
        case ZEL::ShapeType::None:
        case ZEL::ShapeType::ImageOverlay:
            return {};
        case ZEL::ShapeType::Annotation:
            return labelStyle(static_cast<const ZEL::Annotation&>(shape));
        case ZEL::ShapeType::Points:
            return pointStyle(static_cast<const ZEL::Points&>(shape));
        case ZEL::ShapeType::Line:
        case ZEL::ShapeType::LineSegs:
            return pen(static_cast<const ZEL::FillableShape&>(shape));
        default:
            return fillableStyle(static_cast<const ZEL::FillableShape&>(shape));
    }
}

void applyStyle(const char* style, ZEL::ZelShape& shape) {
    if (!style || *style == '\0') return;
    const Tools tools(style);
    if (auto* fillable = dynamic_cast<ZEL::FillableShape*>(&shape)) {
        applyToFillable(tools, *fillable);
    } else if (auto* label = dynamic_cast<ZEL::Annotation*>(&shape)) {
        applyToLabel(tools, *label);
    } else if (auto* points = dynamic_cast<ZEL::Points*>(&shape); points && tools.symbol) {
        GBool none = FALSE;
        const char* const color = tools.symbol->Color(none);
        fill(*points, &ZEL::Points::getColor, &ZEL::Points::setColor, colorOf(color, none));
        const double size = tools.symbol->Size(none);
        if (!none && size > 0.0)
            fill(*points, &ZEL::Points::getPointSize, &ZEL::Points::setPointSize,
                 std::optional(pixels(size)));
    }
}

std::string labelOfStyle(const char* style) {
    const Tools tools(style);
    GBool none = FALSE;
    const char* const text = tools.label ? tools.label->TextString(none) : nullptr;
    // "{NAME}" stands for a field, which the name is taken from anyway.
    return text && !none && *text != '{' ? text : "";
}

}  // namespace exchange
