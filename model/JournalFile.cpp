#include "model/JournalFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/Files.h"
#include "model/NewestFiles.h"

namespace OverlayEditor {

namespace {

constexpr std::string_view kPrefix = ".overlayeditor-journal-";
/// Without the dot, so that people find it.
constexpr std::string_view kAsidePrefix = kPrefix.substr(1);
constexpr int kMaxTries = 100;

/// Whether the path still names the open file.
bool isNameOf(const std::string& path, int fd) {
    struct stat open {};
    struct stat named {};
    return ::fstat(fd, &open) == 0 && ::lstat(path.c_str(), &named) == 0 && open.st_dev == named.st_dev &&
           open.st_ino == named.st_ino;
}

/// \return the descriptor of a file that only we hold now; -1 and EWOULDBLOCK when somebody does, and -1 and
/// another errno when it is none of the user's files
int open(const std::string& path) {
    struct stat info {};
    if (::lstat(path.c_str(), &info) != 0) return -1;
    errno = EINVAL;
    if (!S_ISREG(info.st_mode) || info.st_uid != ::geteuid()) return -1;
    // It is the user's, who may have it: a backup program, say, has taken the rights away.
    constexpr mode_t rights = S_IRUSR | S_IWUSR;
    if ((info.st_mode & rights) != rights) ::chmod(path.c_str(), rights);
    const int fd = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (fd < 0) return -1;
    if (::flock(fd, LOCK_EX | LOCK_NB) == 0) {
        if (isNameOf(path, fd)) return fd;
        errno = ENOENT;
    }
    const int why = errno;
    ::close(fd);
    errno = why;
    return -1;
}

}  // namespace

std::unique_ptr<JournalFile> JournalFile::create(const std::string& directory, std::string& error) {
    static unsigned count = 0;
    for (int i = 0; i < kMaxTries; ++i) {
        std::string path = directory + "/";
        path.append(kPrefix).append(std::to_string(::getpid())).append("-").append(std::to_string(count++));
        const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, 0600);
        if (fd < 0 && errno != EEXIST) break;
        if (fd < 0) continue;
        // Before it was locked it looked like an abandoned one, and may be gone.
        if (::flock(fd, LOCK_EX | LOCK_NB) == 0 && isNameOf(path, fd))
            return std::unique_ptr<JournalFile>(new JournalFile(fd, std::move(path)));
        ::close(fd);
        errno = EEXIST;
    }
    error = UTILS::reasonOf(errno);
    return nullptr;
}

std::vector<std::string> JournalFile::abandonedIn(const std::set<std::string>& directories) {
    std::vector<std::pair<timespec, std::string>> found;
    for (const std::string& directory : directories) {
        for (const std::string& name : UTILS::namesIn(directory)) {
            if (!name.starts_with(kPrefix)) continue;
            std::string path = directory + "/" + name;
            const UTILS::Descriptor file(open(path));
            struct stat info {};
            if (!file.isOpen() || ::fstat(file.get(), &info) != 0) continue;
            if (info.st_size == 0)
                ::unlink(path.c_str());
            else
                found.emplace_back(info.st_mtim, std::move(path));
        }
    }
    std::ranges::sort(found, [](const auto& a, const auto& b) {
        return std::pair(a.first.tv_sec, a.first.tv_nsec) > std::pair(b.first.tv_sec, b.first.tv_nsec);
    });
    std::vector<std::string> paths;
    for (auto& [time, path] : found) paths.push_back(std::move(path));
    return paths;
}

bool JournalFile::anyHeldIn(const std::set<std::string>& directories) {
    const std::string own = std::string(kPrefix).append(std::to_string(::getpid())).append("-");
    return std::ranges::any_of(directories, [&](const std::string& directory) {
        return std::ranges::any_of(UTILS::namesIn(directory), [&](const std::string& name) {
            return name.starts_with(kPrefix) && !name.starts_with(own) &&
                   !UTILS::Descriptor(open(directory + "/" + name)).isOpen() && errno == EWOULDBLOCK;
        });
    });
}

std::unique_ptr<JournalFile> JournalFile::take(const std::string& path) {
    const int fd = open(path);
    return fd < 0 ? nullptr : std::unique_ptr<JournalFile>(new JournalFile(fd, path));
}

std::string JournalFile::append(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file_.get(), bytes.data(), bytes.size());
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            return UTILS::reasonOf(count == 0 ? EIO : errno);
    }
    return {};
}

void JournalFile::settle() {
    ::sync_file_range(file_.get(), 0, 0, SYNC_FILE_RANGE_WRITE);
}

void JournalFile::remove() {
    ::unlink(path_.c_str());
}

std::string JournalFile::setAside() {
    const std::string directory = UTILS::directoryOf(path_);
    std::string stem = directory + "/";
    stem.append(kAsidePrefix).append(path_, directory.size() + 1 + kPrefix.size());
    stem.append("-").append(std::to_string(std::time(nullptr)));
    // Clocks stand still or go back: one of the same number and time is kept, too.
    std::string path = stem;
    for (int i = 2; ::access(path.c_str(), F_OK) == 0 && i < kMaxTries; ++i)
        path = stem + "-" + std::to_string(i);
    if (::rename(path_.c_str(), path.c_str()) == 0) path_ = path;
    dropOldFilesIn(
        directory, [](const std::string& name) { return name.starts_with(kAsidePrefix); }, path_);
    return path_;
}

std::time_t JournalFile::written() const {
    struct stat info {};
    return ::fstat(file_.get(), &info) == 0 ? info.st_mtim.tv_sec : 0;
}

}  // namespace OverlayEditor
