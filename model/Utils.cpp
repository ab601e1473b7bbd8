#include "model/Utils.h"

#include "common/Strings.h"
#include "pi/PIData.h"
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

int getPlatformLla(std::uint64_t id, halCore::Vec3& lla) {
    PIData::PIDataPoint point;
    const int result = PIData::getDataPoint(id, PIData::clockGetVisualTime(), point);
    if (result == 0) lla = halCore::Vec3(point.latRad, point.lonRad, point.altMeters);
    return result;
}

std::string platformName(std::uint64_t id) {
    PIData::PIPlatformHeader header;
    if (PIData::getHeader(id, header) != 0) return "Unknown";
    return UTILS::trimmed(header.name).empty() ? "Unnamed" : header.name;
}

}  // namespace OverlayEditor::Utils
