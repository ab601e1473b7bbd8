#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace UTILS {

/// True when the path names a regular file (a symbolic link to one counts).
bool fileIsFile(const std::string& path);

/// Deletes a file; false when it could not be deleted.
bool fileRemove(const std::string& path);

/// Makes a directory and those above it; one that is there already is fine. Returns an empty text, or why
/// not.
std::string makeDirectories(const std::string& path);

/// The largest file that is read: 1 GiB. A sparse file can be of any size, and fill the memory.
inline constexpr std::size_t kMaxFileSize = std::size_t{1} << 30;

/// Reads a whole regular file into `contents`. Returns an empty text, or why it could not be read
/// ("No such file or directory", "Is a directory", "File too large"); then `contents` is unchanged.
std::string readFile(const std::string& path, std::string& contents);

/// The one way a file of the user's is saved: a temporary file in the same directory, every write
/// checked, flushed to disk, the old file's mode kept, renamed over the target (for a symbolic link,
/// over what it points to), the directory flushed. Returns an empty text, or the reason of the failure;
/// then the old file stands untouched and no temporary file is left. Empty contents are refused.
std::string saveFile(const std::string& path, std::string_view contents);

}  // namespace UTILS
