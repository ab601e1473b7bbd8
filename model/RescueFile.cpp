#include "model/RescueFile.h"

#include <ctime>
#include <iomanip>
#include <sstream>
#include <utility>
#include <vector>

#include "common/Files.h"
#include "common/Notify.h"
#include "common/SaveFile.h"
#include "model/QuickShapeDirectory.h"

namespace OverlayEditor {

namespace {

/// "Unsaved 2026-11-21 16-05-09", of now.
std::string rescueStem() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::ostringstream stem;
    stem << "Unsaved " << std::put_time(&local, "%Y-%m-%d %H-%M-%S");
    return std::move(stem).str();
}

}  // namespace

std::string writeRescueFile(const std::string& text, bool atEnd) {
    std::vector<std::string> directories{makeQuickShapeDirectory()};
    if (atEnd) directories.push_back(UTILS::temporaryDirectory());
    const std::string stem = rescueStem();
    for (const std::string& directory : directories) {
        const auto name = [&](int i) {
            std::string path = directory + "/" + stem;
            if (i > 0) path.append(" ").append(std::to_string(i + 1));
            return path + ".zel";
        };
        std::string path;
        const std::string error = UTILS::saveNewFile(name, text, path, UTILS::Rights::OwnersAlone);
        if (error.empty()) {
            halNotify::notify(halNotify::Warning) << "The unsaved shapes are kept in " << path;
            return path;
        }
        const bool last = directory == directories.back();
        halNotify::notify(halNotify::Error)
            << "The unsaved shapes could not be written to " << path << ": " << error
            << (!last   ? ""
                : atEnd ? "; they are lost"
                        : "; they stay in the editor");
    }
    return {};
}

}  // namespace OverlayEditor
