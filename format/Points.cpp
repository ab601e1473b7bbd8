#include "format/Points.h"

#include "format/OptionalField.h"
#include "format/TextWriter.h"

namespace halCore::ZEL {

int Points::getPointSize(int& out) const {
    return getField(pointSize_, out, 1);
}
int Points::getColor(Color& out) const {
    return getField(color_, out, Color());
}

void Points::serializeToStream_(std::ostream& out) const {
    TextWriter writer(out);
    serializeKeyword_(writer);
    serializePoints_(writer, points_);
    if (pointSize_) writer.text("pointsize ").integer(*pointSize_).endLine();
    if (color_) writer.text("linecolor hex ").color(*color_).endLine();
    serializeOutline_(writer);
}

}  // namespace halCore::ZEL
