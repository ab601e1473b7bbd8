#include "model/RescueFile.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <iomanip>
#include <sstream>
#include <string_view>
#include <vector>

#include "common/Files.h"
#include "common/Notify.h"
#include "common/SaveFile.h"
#include "model/NewestFiles.h"
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

/// Whether a name is one that rescueStem gives, and not one that somebody has made of it.
bool isRescueName(const std::string& name) {
    constexpr std::string_view stem = "Unsaved 0000-00-00 00-00-00";
    constexpr std::string_view suffix = ".zel";
    std::string form = name;
    std::ranges::replace_if(
        form, [](char c) { return c >= '0' && c <= '9'; }, '0');
    if (!form.starts_with(stem) || !form.ends_with(suffix) || form.size() < stem.size() + suffix.size())
        return false;
    // Of several in one second the later ones have a number.
    const std::string number = form.substr(stem.size(), form.size() - stem.size() - suffix.size());
    return number.empty() ||
           (number.size() > 1 && number[0] == ' ' && number.find_first_not_of('0', 1) == std::string::npos);
}

std::string fileWith(const std::string& text, const std::string& directory) {
    for (const std::string& path : newestFilesIn(directory, isRescueName)) {
        std::string kept;
        std::error_code gone;
        if (std::filesystem::file_size(path, gone) == text.size() && UTILS::readFile(path, kept).empty() &&
            kept == text)
            return path;
    }
    return {};
}

const char* whatBecomesOfThem(Unrescued otherwise) {
    switch (otherwise) {
        case Unrescued::StayInEditor:
            return "; they stay in the editor, unless you press the same button again within ten seconds";
        case Unrescued::StayInJournal:
            return "; they are kept as before, and offered again";
        case Unrescued::AreGivenUp:
            return "; they are given up without a rescue file, and Undo brings them back";
        case Unrescued::AreLost:
            break;
    }
    return "; they are lost";
}

}  // namespace

std::string writeRescueFile(const std::string& text, Unrescued otherwise) {
    std::vector<std::string> directories{makeQuickShapeDirectory()};
    if (otherwise == Unrescued::AreLost) directories.push_back(UTILS::temporaryDirectory());
    const std::string stem = rescueStem();
    for (const std::string& directory : directories) {
        const auto name = [&](int i) {
            std::string path = directory + "/" + stem;
            if (i > 0) path.append(" ").append(std::to_string(i + 1));
            return path + ".zel";
        };
        // In the other one there are other people's files.
        const bool own = directory == directories.front();
        std::string path = own ? fileWith(text, directory) : std::string();
        const std::string error =
            path.empty() ? UTILS::saveNewFile(name, text, path, UTILS::Rights::OwnersAlone) : std::string();
        if (error.empty()) {
            if (own) dropOldFilesIn(directory, isRescueName, path);
            halNotify::notify(halNotify::Warning) << "The unsaved shapes are kept in " << path;
            return path;
        }
        const bool last = directory == directories.back();
        halNotify::notify(halNotify::Error) << "The unsaved shapes could not be written to " << path << ": "
                                            << error << (last ? whatBecomesOfThem(otherwise) : "");
    }
    return {};
}

}  // namespace OverlayEditor
