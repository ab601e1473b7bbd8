#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <sys/types.h>

#include "common/Descriptor.h"

namespace UTILS {

/// A file that is written before it takes its place. A nameless one, which not every file system can make,
/// leaves nothing behind a process that dies before it is placed. The others, and that one for the moment of
/// placing, are named ".overlayeditor-save-PID-N" and locked. It goes with the object unless it was placed.
class TemporaryFile {
  public:
    enum Kind { Nameless, Named };

    /// Null and errno when no file of the kind can be made in the directory.
    /// \param mode permissions, without those that the umask takes
    static std::unique_ptr<TemporaryFile> create(const std::string& directory, mode_t mode, Kind kind);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    int descriptor() const { return file_.get(); }
    /// 0 or errno.
    int write(std::string_view contents);
    /// Brings it to the disk. 0 or errno.
    int flush();
    /// Renames it to `target`, in the same directory. 0 or errno.
    /// \param replace whether a file of that name is replaced; otherwise it is EEXIST
    int place(const std::string& target, bool replace);
    /// Swaps names with `target`, in the same directory: what stood there has this one's name now, and goes
    /// with the object. 0 or errno: ENOENT when nothing stands there, EINVAL or ENOSYS where files cannot be
    /// swapped.
    int exchange(const std::string& target);
    /// Whole path; empty while it has none.
    const std::string& name() const { return name_; }

  private:
    TemporaryFile(int fd, std::string directory, std::string name);
    /// Gives a file without a name one. 0 or errno.
    int makeName_();

    Descriptor file_;
    std::string directory_;
    /// Whole path; empty while it has none.
    std::string name_;
};

/// Deletes what processes that died have left of such files in a directory. Files that are being written,
/// be it by other processes, and those of other users stay.
void removeAbandonedFiles(const std::string& directory);

}  // namespace UTILS
