#include "format/CircularHeightShape.h"

#include "format/OptionalField.h"
#include "format/TextWriter.h"

namespace halCore::ZEL {

int CircularHeightShape::getHeight(double& metres) const {
    return getField(height_, metres, 0.0);
}

void CircularHeightShape::serializeCircularHeight_(TextWriter& writer) const {
    serializeCircular_(writer);
    if (height_) serializeAltitude_(writer, "height ", *height_);
}

void CircularHeightShape::serializeToStream_(std::ostream& out) const {
    TextWriter writer(out);
    serializeCircularHeight_(writer);
}

int Ellipsoid::getMajorAxis(double& metres) const {
    return getField(majorAxis_, metres, 0.0);
}
int Ellipsoid::getMinorAxis(double& metres) const {
    return getField(minorAxis_, metres, 0.0);
}

void Ellipsoid::serializeToStream_(std::ostream& out) const {
    TextWriter writer(out);
    serializeCircularHeight_(writer);
    if (majorAxis_) serializeRange_(writer, "majoraxis ", *majorAxis_);
    if (minorAxis_) serializeRange_(writer, "minoraxis ", *minorAxis_);
}

}  // namespace halCore::ZEL
