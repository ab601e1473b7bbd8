#include "model/QuickShapeDirectory.h"

#include <cstdlib>

#include "common/Files.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

std::string quickShapeDirectory() {
    std::string directory = PIGUI::PIRegistry::getValue(kQuickShapeDirectoryKey);
    if (directory.empty()) {
        const char* const home = std::getenv("HOME");
        directory = home && *home ? std::string(home) + "/.config/OverlayEditor/zel/" : ".";
    }
    while (directory.size() > 1 && directory.ends_with('/')) directory.pop_back();
    return directory;
}

std::string makeQuickShapeDirectory() {
    std::string directory = quickShapeDirectory();
    UTILS::makeDirectories(directory);
    return directory;
}

}  // namespace OverlayEditor
