#include "gui/HostLists.h"

#include "pi/PIData.h"

namespace OverlayEditor {

std::string platformName(std::uint64_t id) {
    PIData::PIPlatformHeader header;
    return PIData::getHeader(id, header) == 0 ? header.name : "Unknown";
}

}  // namespace OverlayEditor
