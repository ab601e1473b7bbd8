#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "common/Descriptor.h"

namespace UTILS {

/// What an errno means, in a user's words: "it does not exist". The file is named by whoever says it.
std::string reasonOf(int error);
/// Of a device, a pipe and the like.
inline constexpr const char* kNoFile = "what has this name is no file";

/// True when the path names a regular file (a symbolic link to one counts).
bool fileIsFile(const std::string& path);

/// Whether two paths lead to the same file, be it through symbolic links; one that is missing is only itself.
/// Another hard link is another file: it is not replaced with the first.
bool isSameFile(const std::string& a, const std::string& b);

/// Deletes a file; false when it could not be deleted, which errno explains.
bool fileRemove(const std::string& path);

/// Where a path's last part lies: "." for a bare name.
std::string directoryOf(const std::string& path);

/// Where temporary files go, without a slash at the end.
std::string temporaryDirectory();

/// Makes a directory and those above it; one that is there already is fine. Returns an empty text, or why
/// not.
std::string makeDirectories(const std::string& path);

/// What a directory holds, in no order, without "." and ".."; nothing when it cannot be read.
std::vector<std::string> namesIn(const std::string& directory);

/// The largest file that is read: 1 GiB. A sparse file can be of any size, and fill the memory.
inline constexpr std::size_t kMaxFileSize = std::size_t{1} << 30;

/// Reads a regular file from its beginning to its end, a part at a time.
class FileReading {
  public:
    /// Opens it.
    explicit FileReading(const std::string& path);
    /// Reads about so many bytes. \return whether there is no more, or an error
    bool goOn(std::size_t bytes);
    /// Empty, or why it cannot be read, as readFile() tells it.
    const std::string& error() const { return error_; }
    /// What has been read.
    std::string takeContents() { return std::move(contents_); }

  private:
    bool fail(std::string error);

    Descriptor file_;
    std::string contents_;
    std::string error_;
};

/// Reads a whole regular file into `contents`. Returns an empty text, or why it could not be read
/// ("it does not exist", "a directory has this name", "It is larger than ..."); then `contents` is unchanged.
std::string readFile(const std::string& path, std::string& contents);

}  // namespace UTILS
