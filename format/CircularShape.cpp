#include "format/CircularShape.h"

#include "format/OptionalField.h"
#include "format/TextWriter.h"

namespace halCore::ZEL {

int CircularShape::getCenterPosition(Vec3& out) const {
    return getField(center_, out, Vec3());
}
int CircularShape::getRadius(double& metres) const {
    return getField(radius_, metres, 0.0);
}

void CircularShape::serializeCircular_(TextWriter& writer) const {
    serializeKeyword_(writer);
    serializeFillable_(writer);
    if (center_) serializePosition_(writer, isRelative() ? "centerxyz " : "centerlla ", *center_);
    if (radius_) serializeRange_(writer, "radius ", *radius_);
}

void CircularShape::serializeToStream_(std::ostream& out) const {
    TextWriter writer(out);
    serializeCircular_(writer);
}

int Orbit::getCenterPosition2(Vec3& out) const {
    return getField(center2_, out, Vec3());
}

void Orbit::serializeToStream_(std::ostream& out) const {
    TextWriter writer(out);
    serializeCircular_(writer);
    if (center2_) serializePosition_(writer, isRelative() ? "centerxy2 " : "centerll2 ", *center2_);
}

}  // namespace halCore::ZEL
