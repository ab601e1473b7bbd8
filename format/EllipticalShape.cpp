#include "format/EllipticalShape.h"

#include "format/OptionalField.h"
#include "format/TextWriter.h"

namespace halCore::ZEL {

int EllipticalShape::getAngleStart(double& radians) const {
    return getField(angleStart_, radians, 0.0);
}
int EllipticalShape::getAngleSweep(double& radians) const {
    return getField(angleSweep_, radians, 0.0);
}
int EllipticalShape::getMajorAxis(double& metres) const {
    return getField(majorAxis_, metres, 0.0);
}
int EllipticalShape::getMinorAxis(double& metres) const {
    return getField(minorAxis_, metres, 0.0);
}

void EllipticalShape::serializeElliptical_(TextWriter& writer) const {
    serializeCircular_(writer);
    if (angleStart_) serializeAngle_(writer, "anglestart ", *angleStart_);
    if (angleSweep_) serializeAngle_(writer, "angledeg ", *angleSweep_);
    if (majorAxis_) serializeRange_(writer, "majoraxis ", *majorAxis_);
    if (minorAxis_) serializeRange_(writer, "minoraxis ", *minorAxis_);
}

void EllipticalShape::serializeToStream_(std::ostream& out) const {
    TextWriter writer(out);
    serializeElliptical_(writer);
}

int Cylinder::getHeight(double& metres) const {
    return getField(height_, metres, 0.0);
}

void Cylinder::serializeToStream_(std::ostream& out) const {
    TextWriter writer(out);
    serializeElliptical_(writer);
    if (height_) serializeAltitude_(writer, "height ", *height_);
}

}  // namespace halCore::ZEL
