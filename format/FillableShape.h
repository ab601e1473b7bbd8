#pragma once

#include "format/Color.h"
#include "format/OutlinedShape.h"

namespace halCore::ZEL {

enum class LineStyle : unsigned char { Solid, Dashed, Dotted };

/// A shape with a line and an area that can be filled. A fill colour alone does not fill.
class FillableShape : public OutlinedShape {
  public:
    /// Pixels; default 1.
    int getLineWidth(int& out) const;
    void setLineWidth(int pixels) { lineWidth_ = pixels; }

    int getLineColor(Color& out) const;
    void setLineColor(const Color& color) { lineColor_ = color; }

    int getLineStyle(LineStyle& out) const;
    void setLineStyle(LineStyle style) { lineStyle_ = style; }

    int getFilled(bool& out) const;
    void setFilled(bool filled) { filled_ = filled; }

    int getFillColor(Color& out) const;
    void setFillColor(const Color& color) { fillColor_ = color; }

  protected:
    using OutlinedShape::OutlinedShape;
    /// The outline's line and the line and fill attributes.
    void serializeFillable_(TextWriter& writer) const;

  private:
    std::optional<int> lineWidth_;
    std::optional<Color> lineColor_;
    std::optional<LineStyle> lineStyle_;
    std::optional<bool> filled_;
    std::optional<Color> fillColor_;
};

}  // namespace halCore::ZEL
