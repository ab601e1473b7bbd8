#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace OverlayEditor {

/// Of what the editor keeps in a directory for its user to find.
inline constexpr std::size_t kMostKeptFiles = 20;

/// The paths of the files of a directory with such names, the newest first.
std::vector<std::string> newestFilesIn(const std::string& directory,
                                       const std::function<bool(const std::string&)>& isOne);
/// Removes all of them but the newest kMostKeptFiles.
void dropOldFilesIn(const std::string& directory, const std::function<bool(const std::string&)>& isOne);

}  // namespace OverlayEditor
