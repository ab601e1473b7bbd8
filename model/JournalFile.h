#pragma once

#include <ctime>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "common/Descriptor.h"

namespace OverlayEditor {

/// A journal's file: it lies beside the rescue files, only its user may read it, and it is locked as long as
/// the process lives that writes or reads it.
class JournalFile {
  public:
    /// A new, empty one in a directory. \return null, and why, when there can be none
    static std::unique_ptr<JournalFile> create(const std::string& directory, std::string& error);
    /// Those that dead processes have left in some directories, the newest first.
    static std::vector<std::string> abandonedIn(const std::set<std::string>& directories);
    /// Whether other processes hold some there.
    static bool anyHeldIn(const std::set<std::string>& directories);
    /// \return null when it is another process's now, or gone
    static std::unique_ptr<JournalFile> take(const std::string& path);

    JournalFile(const JournalFile&) = delete;
    JournalFile& operator=(const JournalFile&) = delete;

    const std::string& path() const { return path_; }
    /// \return why not, empty when it was written
    std::string append(std::string_view bytes);
    /// Has the system bring to the disk what was written, without waiting for it.
    void settle();
    void remove();
    /// It gets a name under which nobody looks for it. Of those that lie there the newest are kept.
    /// \return its path
    std::string setAside();
    /// When it was written last.
    std::time_t written() const;

  private:
    JournalFile(int fd, std::string path) : file_(fd), path_(std::move(path)) {}

    UTILS::Descriptor file_;
    std::string path_;
};

}  // namespace OverlayEditor
