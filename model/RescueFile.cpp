#include "model/RescueFile.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <functional>
#include <iomanip>
#include <sstream>
#include <string_view>
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

constexpr std::size_t kMostFiles = 20;

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

/// The rescue files of a directory, the newest first.
std::vector<std::string> rescueFilesIn(const std::string& directory) {
    std::vector<std::pair<std::filesystem::file_time_type, std::string>> found;
    for (const std::string& name : UTILS::namesIn(directory)) {
        std::error_code gone;
        const auto time = std::filesystem::last_write_time(directory + "/" + name, gone);
        if (isRescueName(name) && !gone) found.emplace_back(time, directory + "/" + name);
    }
    std::ranges::sort(found, std::greater<>());
    std::vector<std::string> paths;
    for (auto& [time, path] : found) paths.push_back(std::move(path));
    return paths;
}

std::string fileWith(const std::string& text, const std::string& directory) {
    for (const std::string& path : rescueFilesIn(directory)) {
        std::string kept;
        std::error_code gone;
        if (std::filesystem::file_size(path, gone) == text.size() && UTILS::readFile(path, kept).empty() &&
            kept == text)
            return path;
    }
    return {};
}

void dropOldest(const std::string& directory) {
    const std::vector<std::string> paths = rescueFilesIn(directory);
    for (std::size_t i = kMostFiles; i < paths.size(); ++i) UTILS::fileRemove(paths[i]);
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
            if (own) dropOldest(directory);
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
