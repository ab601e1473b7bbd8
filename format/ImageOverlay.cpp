#include "format/ImageOverlay.h"

#include "format/OptionalField.h"

namespace halCore::ZEL {

int ImageOverlay::getRotation(double& radians) const {
    return getField(rotation_, radians, 0.0);
}

}  // namespace halCore::ZEL
