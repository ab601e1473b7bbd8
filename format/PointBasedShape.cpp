#include "format/PointBasedShape.h"

#include "format/OptionalField.h"
#include "format/TextWriter.h"

namespace halCore::ZEL {

int PointBasedShape::getTessellation(TessellationStyle& out) const {
    return getField(tessellation_, out, TessellationStyle::None);
}

void PointBasedShape::serializeToStream_(std::ostream& out) const {
    TextWriter writer(out);
    serializeKeyword_(writer);
    serializePoints_(writer, points_);
    serializeFillable_(writer);
    if (!tessellation_) return;
    switch (*tessellation_) {
        case TessellationStyle::None:
            writer.text("tessellate false\n");
            break;
        case TessellationStyle::RhumbLine:
            writer.text("tessellate true\nlineprojection rhumbline\n");
            break;
        case TessellationStyle::GreatCircle:
            writer.text("tessellate true\nlineprojection greatcircle\n");
            break;
    }
}

}  // namespace halCore::ZEL
