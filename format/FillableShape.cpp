#include "format/FillableShape.h"

#include "format/OptionalField.h"
#include "format/TextWriter.h"

namespace halCore::ZEL {
namespace {

std::string_view keywordOf(LineStyle style) {
    switch (style) {
        case LineStyle::Dashed:
            return "dashed";
        case LineStyle::Dotted:
            return "dotted";
        case LineStyle::Solid:
            break;
    }
    return "solid";
}

}  // namespace

int FillableShape::getLineWidth(int& out) const {
    return getField(lineWidth_, out, 1);
}
int FillableShape::getLineColor(Color& out) const {
    return getField(lineColor_, out, Color());
}
int FillableShape::getLineStyle(LineStyle& out) const {
    return getField(lineStyle_, out, LineStyle::Solid);
}
int FillableShape::getFilled(bool& out) const {
    return getField(filled_, out, false);
}
int FillableShape::getFillColor(Color& out) const {
    return getField(fillColor_, out, Color());
}

void FillableShape::serializeFillable_(TextWriter& writer) const {
    serializeOutline_(writer);
    if (lineWidth_) writer.text("linewidth ").integer(*lineWidth_).endLine();
    if (lineColor_) writer.text("linecolor hex ").color(*lineColor_).endLine();
    if (lineStyle_) writer.text("linestyle ").text(keywordOf(*lineStyle_)).endLine();
    if (filled_.value_or(false)) writer.text("filled\n");
    if (fillColor_) writer.text("fillcolor hex ").color(*fillColor_).endLine();
}

}  // namespace halCore::ZEL
