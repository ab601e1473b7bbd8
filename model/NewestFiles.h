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
/// \param last the path of the one that was written last: its time becomes that of the newest, should the
/// clock
///        have been set back since the others were written
void dropOldFilesIn(const std::string& directory, const std::function<bool(const std::string&)>& isOne,
                    const std::string& last);

}  // namespace OverlayEditor
