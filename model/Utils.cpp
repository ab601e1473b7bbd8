#include "model/Utils.h"

#include "pi/PIHALVIS.h"

namespace OverlayEditor::Utils {

int getDefaultLla(halCore::Vec3& lla) {
    double lat = 0.0;
    double lon = 0.0;
    double alt = 0.0;
    const int result = PIHALVIS::getEyePosition(&lat, &lon, &alt);
    lla = result == 0 ? halCore::Vec3(lat, lon, 0.0) : halCore::Vec3();
    return result;
}

}  // namespace OverlayEditor::Utils
