#include "model/FileDisplays.h"

#include "common/Files.h"
#include "pi/PIData.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

std::vector<void*> displaysOf(const std::string& fileName) {
    std::vector<void*> overlays = PIHALVIS::getZELFiles();
    for (const std::uint64_t platform : PIData::getPlatformList()) {
        const auto attached = PIHALVIS::getAttachedZELFiles(platform);
        overlays.insert(overlays.end(), attached.begin(), attached.end());
    }
    std::erase_if(overlays, [&](void* overlay) {
        const std::string name = PIHALVIS::getZELFilename(overlay);
        return name.empty() || !UTILS::isSameFile(name, fileName);
    });
    return overlays;
}

void* displayOf(const std::string& fileName) {
    if (fileName.empty()) return nullptr;
    if (void* const named = PIHALVIS::getZELObject(fileName)) return named;
    const std::vector<void*> linked = displaysOf(fileName);
    return linked.empty() ? nullptr : linked.front();
}

}  // namespace OverlayEditor
