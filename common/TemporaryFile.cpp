#include "common/TemporaryFile.h"

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>

#include "common/Files.h"

namespace UTILS {
namespace {

constexpr std::string_view kPrefix = ".overlayeditor-save-";
constexpr int kMaxTries = 100;

/// The prefix, digits, a dash and digits: nobody else's file.
bool isOurs(std::string_view name) {
    if (!name.starts_with(kPrefix)) return false;
    name.remove_prefix(kPrefix.size());
    const auto digits = [](std::string_view text) {
        return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
    };
    const std::size_t dash = name.find('-');
    return dash != std::string_view::npos && digits(name.substr(0, dash)) && digits(name.substr(dash + 1));
}

/// One that nobody can guess, and so take before.
std::string nextName(const std::string& directory) {
    static std::atomic<std::uint64_t> count = [] {
        std::uint64_t first = 0;
        [[maybe_unused]] const ssize_t drawn = ::getrandom(&first, sizeof(first), GRND_NONBLOCK);
        return first;
    }();
    std::string name = directory + "/";
    name.append(kPrefix).append(std::to_string(::getpid())).append("-").append(std::to_string(count++));
    return name;
}

/// Whether the path still names the open file.
bool isNameOf(const std::string& path, int fd) {
    struct stat open {};
    struct stat named {};
    return ::fstat(fd, &open) == 0 && ::lstat(path.c_str(), &named) == 0 && open.st_dev == named.st_dev &&
           open.st_ino == named.st_ino;
}

/// The lock goes with the descriptor or the process. It fails only when somebody else holds it, or where the
/// file system has none; then nobody can take the file for an abandoned one either.
bool lock(int fd) {
    return ::flock(fd, LOCK_EX | LOCK_NB) == 0;
}

/// Without replacing. Not every file system has it in one step.
int renameToFree(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return errno;
    struct stat info {};
    if (::lstat(to.c_str(), &info) == 0) return EEXIST;
    return std::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

}  // namespace

TemporaryFile::TemporaryFile(int fd, std::string directory, std::string name)
    : file_(fd), directory_(std::move(directory)), name_(std::move(name)) {}

TemporaryFile::~TemporaryFile() {
    if (!name_.empty()) ::unlink(name_.c_str());
}

std::unique_ptr<TemporaryFile> TemporaryFile::create(const std::string& directory, mode_t mode, Kind kind) {
    // mkostemp's private mode could only be widened by reading the umask, which changes it for every thread.
    if (kind == Nameless) {
        const int fd = ::open(directory.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, mode);
        if (fd < 0) return nullptr;
        lock(fd);
        return std::unique_ptr<TemporaryFile>(new TemporaryFile(fd, directory, {}));
    }
    for (int i = 0; i < kMaxTries; ++i) {
        std::string name = nextName(directory);
        const int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (fd < 0 && errno != EEXIST) return nullptr;
        if (fd < 0) continue;
        // Before it was locked it looked like an abandoned one, and may be gone.
        lock(fd);
        if (isNameOf(name, fd))
            return std::unique_ptr<TemporaryFile>(new TemporaryFile(fd, directory, std::move(name)));
        ::close(fd);
    }
    errno = EEXIST;
    return nullptr;
}

int TemporaryFile::write(std::string_view contents) {
    while (!contents.empty()) {
        const ssize_t count = ::write(file_.get(), contents.data(), contents.size());
        if (count > 0)
            contents.remove_prefix(static_cast<std::size_t>(count));
        else if (count == 0)
            return EIO;
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

int TemporaryFile::flush() {
    while (::fsync(file_.get()) != 0)
        if (errno != EINTR) return errno;
    return 0;
}

int TemporaryFile::makeName_() {
    const std::string nameless = "/proc/self/fd/" + std::to_string(file_.get());
    for (int i = 0; i < kMaxTries; ++i) {
        std::string name = nextName(directory_);
        if (::linkat(AT_FDCWD, nameless.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
            name_ = std::move(name);
            return 0;
        }
        if (errno != EEXIST) return errno;
    }
    return EEXIST;
}

int TemporaryFile::place(const std::string& target, bool replace) {
    if (name_.empty())
        if (const int error = makeName_()) return error;
    int error = 0;
    if (!replace)
        error = renameToFree(name_, target);
    else if (std::rename(name_.c_str(), target.c_str()) != 0)
        error = errno;
    if (error == 0) name_.clear();
    return error;
}

int TemporaryFile::exchange(const std::string& target) {
    if (name_.empty())
        if (const int error = makeName_()) return error;
    return ::renameat2(AT_FDCWD, name_.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE) == 0 ? 0 : errno;
}

void removeAbandonedFiles(const std::string& directory) {
    for (const std::string& name : namesIn(directory)) {
        if (!isOurs(name)) continue;
        const std::string path = directory + "/" + name;
        const Descriptor file(::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        struct stat info {};
        if (!file.isOpen() || ::fstat(file.get(), &info) != 0) continue;
        if (!S_ISREG(info.st_mode) || info.st_uid != ::geteuid()) continue;
        // Its writer, if it lives, holds the lock until the file has its place and the name is gone.
        if (lock(file.get()) && isNameOf(path, file.get())) ::unlink(path.c_str());
    }
}

}  // namespace UTILS
