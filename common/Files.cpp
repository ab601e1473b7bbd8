#include "common/Files.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace UTILS {
namespace {

std::string reason(int error) {
    return std::generic_category().message(error);
}

/// An open file descriptor that closes itself.
class Descriptor {
  public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return fd_; }
    bool isOpen() const { return fd_ >= 0; }
    /// Closing can report a write that failed late (a network file system); 0 or errno.
    int close() {
        if (fd_ < 0) return 0;
        return ::close(std::exchange(fd_, -1)) == 0 ? 0 : errno;
    }

  private:
    int fd_;
};

/// Writes everything; 0 or errno.
int writeAll(int fd, std::string_view contents) {
    while (!contents.empty()) {
        const ssize_t count = ::write(fd, contents.data(), contents.size());
        if (count > 0)
            contents.remove_prefix(static_cast<std::size_t>(count));
        else if (count == 0)
            return EIO;
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

std::string directoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// Follows symbolic links, the last of which may point to a file that does not exist yet. 0 or errno.
int followLinks(std::string& path) {
    constexpr int maxLinks = 40;
    for (int i = 0; i < maxLinks; ++i) {
        std::array<char, 4096> buffer;
        const ssize_t length = ::readlink(path.c_str(), buffer.data(), buffer.size());
        if (length < 0) return errno == EINVAL || errno == ENOENT ? 0 : errno;
        if (static_cast<std::size_t>(length) == buffer.size()) return ENAMETOOLONG;
        std::string target(buffer.data(), static_cast<std::size_t>(length));
        path = target.starts_with('/') ? target : directoryOf(path) + "/" + target;
    }
    return ELOOP;
}

/// Creates a file of a name of its own in the directory and opens it for writing; -1 and errno on failure.
/// The umask applies, as mkostemp's private mode could only be widened by reading the mask, which changes
/// it for every thread of the process.
int createTemporary(const std::string& directory, mode_t mode, std::string& path) {
    static std::atomic<unsigned> count = 0;
    constexpr int maxTries = 100;
    for (int i = 0; i < maxTries; ++i) {
        path = directory + "/.save-" + std::to_string(::getpid()) + "-" + std::to_string(count++);
        const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (fd >= 0 || errno != EEXIST) return fd;
    }
    return -1;
}

/// Gives the written temporary file the old file's mode, if there was one, and brings it to the disk. 0 or
/// errno.
int finishFile(Descriptor& file, std::optional<mode_t> oldMode) {
    if (oldMode && ::fchmod(file.get(), *oldMode) != 0) return errno;
    if (::fsync(file.get()) != 0) return errno;
    return file.close();
}

}  // namespace

bool fileIsFile(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

bool fileRemove(const std::string& path) {
    return ::unlink(path.c_str()) == 0;
}

std::string makeDirectories(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    return error ? error.message() : std::string();
}

std::string readFile(const std::string& path, std::string& contents) {
    // Without O_NONBLOCK opening a pipe that nobody writes to would hang.
    Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat info {};
    if (!file.isOpen() || ::fstat(file.get(), &info) != 0) return reason(errno);
    if (S_ISDIR(info.st_mode)) return reason(EISDIR);
    if (!S_ISREG(info.st_mode)) return "Not a regular file";

    if (static_cast<std::size_t>(info.st_size) > kMaxFileSize) return reason(EFBIG);
    std::string result;
    std::size_t size = 0;
    result.resize(static_cast<std::size_t>(info.st_size) + 1);
    for (;;) {
        // It may have grown, or not have told its size.
        if (size > kMaxFileSize) return reason(EFBIG);
        if (size == result.size()) result.resize(2 * result.size());
        const ssize_t count = ::read(file.get(), result.data() + size, result.size() - size);
        if (count == 0) break;
        if (count > 0)
            size += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            return reason(errno);
    }
    result.resize(size);
    contents = std::move(result);
    return {};
}

std::string saveFile(const std::string& path, std::string_view contents) {
    if (contents.empty()) return "Nothing to write";
    std::string target = path;
    if (const int error = followLinks(target)) return reason(error);

    std::optional<mode_t> oldMode;
    struct stat info {};
    if (::stat(target.c_str(), &info) == 0) {
        if (S_ISDIR(info.st_mode)) return reason(EISDIR);
        if (!S_ISREG(info.st_mode)) return "Not a regular file";
        // Renaming needs no right to write the file itself, but replacing a protected one is no save.
        if (::access(target.c_str(), W_OK) != 0) return reason(errno);
        oldMode = info.st_mode & 07777;
    } else if (errno != ENOENT) {
        return reason(errno);
    }

    const std::string directory = directoryOf(target);
    std::string temporary;
    // Nobody else sees the contents of a private file before it has its mode.
    Descriptor file(createTemporary(directory, oldMode ? 0600 : 0666, temporary));
    if (!file.isOpen()) return reason(errno);
    int error = writeAll(file.get(), contents);
    if (error == 0) error = finishFile(file, oldMode);
    if (error == 0 && std::rename(temporary.c_str(), target.c_str()) != 0) error = errno;
    if (error != 0) {
        ::unlink(temporary.c_str());
        return reason(error);
    }

    // The new file stands; a file system that cannot flush directories is no failure.
    Descriptor folder(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.isOpen()) ::fsync(folder.get());
    return {};
}

}  // namespace UTILS
