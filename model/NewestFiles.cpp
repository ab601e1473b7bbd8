#include "model/NewestFiles.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <utility>

#include "common/Files.h"

namespace OverlayEditor {

std::vector<std::string> newestFilesIn(const std::string& directory,
                                       const std::function<bool(const std::string&)>& isOne) {
    std::vector<std::pair<std::filesystem::file_time_type, std::string>> found;
    for (const std::string& name : UTILS::namesIn(directory)) {
        std::error_code gone;
        const auto time = std::filesystem::last_write_time(directory + "/" + name, gone);
        if (isOne(name) && !gone) found.emplace_back(time, directory + "/" + name);
    }
    std::ranges::sort(found, std::greater<>());
    std::vector<std::string> paths;
    for (auto& [time, path] : found) paths.push_back(std::move(path));
    return paths;
}

void dropOldFilesIn(const std::string& directory, const std::function<bool(const std::string&)>& isOne,
                    const std::string& last) {
    std::vector<std::string> paths = newestFilesIn(directory, isOne);
    std::erase(paths, last);
    if (!paths.empty()) {
        std::error_code failed;
        const auto newest = std::filesystem::last_write_time(paths.front(), failed);
        // The times of some file systems are of two seconds.
        if (!failed && std::filesystem::last_write_time(last, failed) <= newest && !failed)
            std::filesystem::last_write_time(last, newest + std::chrono::seconds(2), failed);
    }
    // It stays also where times cannot be set.
    paths.insert(paths.begin(), last);
    for (std::size_t i = kMostKeptFiles; i < paths.size(); ++i) UTILS::fileRemove(paths[i]);
}

}  // namespace OverlayEditor
