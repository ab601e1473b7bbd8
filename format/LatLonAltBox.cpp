#include "format/LatLonAltBox.h"

#include "format/OptionalField.h"
#include "format/TextWriter.h"
#include "geo/Angles.h"

namespace halCore::ZEL {

int LatLonAltBox::getHeight(double& metres) const {
    return getField(height_, metres, 0.0);
}

void LatLonAltBox::serializeToStream_(std::ostream& out) const {
    TextWriter writer(out);
    const Units& altitudeUnits = originalUnits().altitudeUnits();
    writer.text("latlonaltbox ");
    for (const double side : {north_, south_, west_, east_}) writer.number(side * kDegreesPerRadian).space();
    writer.number(Units::METERS.convertTo(altitudeUnits, altitude_));
    if (height_) writer.space().number(Units::METERS.convertTo(altitudeUnits, *height_));
    writer.endLine();
    serializeFillable_(writer);
}

}  // namespace halCore::ZEL
