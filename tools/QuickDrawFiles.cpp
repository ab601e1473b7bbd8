#include "tools/QuickDrawFiles.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

#include "common/Files.h"
#include "common/NumberText.h"

namespace OverlayEditor {

namespace {

constexpr std::array<std::string_view, 6> kKinds = {"Free Draw", "Circle",    "Line",
                                                    "Polygon",   "Rectangle", "Triangle"};
constexpr std::string_view kExtension = ".zel";
/// The numbers of files beyond it are not the manager's.
constexpr long long kHighestNumber = 1'000'000'000;

/// 12 for "Circle_12.zel", 0 for what is no quick shape's file.
int numberOf(std::string_view name) {
    if (!name.ends_with(kExtension)) return 0;
    name.remove_suffix(kExtension.size());
    const auto underscore = name.rfind('_');
    if (underscore == std::string_view::npos) return 0;
    if (std::find(kKinds.begin(), kKinds.end(), name.substr(0, underscore)) == kKinds.end()) return 0;
    const auto number = UTILS::readInteger(name.substr(underscore + 1));
    return number && *number > 0 && *number < kHighestNumber ? static_cast<int>(*number) : 0;
}

}  // namespace

int highestQuickShapeNumber(const std::string& directory) {
    int highest = 0;
    for (const std::string& name : UTILS::namesIn(directory)) highest = std::max(highest, numberOf(name));
    return highest;
}

WrittenFile::WrittenFile(const std::string& path, std::string_view text)
    : path_(path), version_(path, text), time_(lastWriteTime_()) {}

bool WrittenFile::isUntouched() const {
    std::string text;
    return lastWriteTime_() == time_ && UTILS::readFile(path_, text).empty() && version_.is(path_, text);
}

WrittenFile::Time WrittenFile::lastWriteTime_() const {
    std::error_code error;
    return std::filesystem::last_write_time(path_, error);
}

}  // namespace OverlayEditor
