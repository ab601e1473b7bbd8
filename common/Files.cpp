#include "common/Files.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace UTILS {

std::string reasonOf(int error) {
    // The system's own words speak of devices, levels and arguments.
    static constexpr std::pair<int, const char*> words[] = {{ENOSPC, "the disk is full"},
                                                            {EDQUOT, "your share of the disk is full"},
                                                            {EROFS, "the disk can only be read"},
                                                            {EIO, "the disk has failed"},
                                                            {EFBIG, "the file is too large"},
                                                            {EACCES, "you have no permission"},
                                                            {EPERM, "you have no permission"},
                                                            {ENOENT, "it does not exist"},
                                                            {EEXIST, "a file of this name exists"},
                                                            {EISDIR, "a directory has this name"},
                                                            {ENOTDIR, "a part of the path is no directory"},
                                                            {ENAMETOOLONG, "the name is too long"},
                                                            {ELOOP, "the links lead in a circle"},
                                                            {EBUSY, "another program uses it"},
                                                            {ETXTBSY, "another program uses it"},
                                                            {EMFILE, "too many files are open"},
                                                            {ENFILE, "too many files are open"},
                                                            {ENOMEM, "not enough memory"}};
    for (const auto& [known, text] : words)
        if (known == error) return text;
    return std::generic_category().message(error);
}

bool fileIsFile(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

bool isSameFile(const std::string& a, const std::string& b) {
    if (a == b) return true;
    std::error_code missing;
    const std::filesystem::path target = std::filesystem::canonical(a, missing);
    return !missing && target == std::filesystem::canonical(b, missing);
}

std::string directoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string temporaryDirectory() {
    std::error_code error;
    const std::filesystem::path directory = std::filesystem::temp_directory_path(error);
    return error ? "/tmp" : directory.native();
}

bool fileRemove(const std::string& path) {
    return ::unlink(path.c_str()) == 0;
}

std::string makeDirectories(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    return error ? reasonOf(error.value()) : std::string();
}

// Not by std::filesystem, which ends the program when memory is short.
std::vector<std::string> namesIn(const std::string& directory) {
    const auto close = [](DIR* open) { ::closedir(open); };
    const std::unique_ptr<DIR, decltype(close)> open(::opendir(directory.c_str()), close);
    std::vector<std::string> names;
    while (const dirent* const entry = open ? ::readdir(open.get()) : nullptr)
        if (const std::string_view name = entry->d_name; name != "." && name != "..")
            names.emplace_back(name);
    return names;
}

namespace {
constexpr const char* kTooLarge = "It is larger than 1 GiB, the most that is read";
static_assert(kMaxFileSize == std::size_t{1} << 30);
}  // namespace

FileReading::FileReading(const std::string& path)
    // Without O_NONBLOCK opening a pipe that nobody writes to would hang.
    : file_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    struct stat info {};
    if (!file_.isOpen() || ::fstat(file_.get(), &info) != 0)
        fail(reasonOf(errno));
    else if (S_ISDIR(info.st_mode))
        fail(reasonOf(EISDIR));
    else if (!S_ISREG(info.st_mode))
        fail(kNoFile);
    else if (static_cast<std::size_t>(info.st_size) > kMaxFileSize)
        fail(kTooLarge);
    else
        contents_.reserve(static_cast<std::size_t>(info.st_size) + 1);
}

bool FileReading::fail(std::string error) {
    error_ = std::move(error);
    contents_ = {};
    return true;
}

bool FileReading::goOn(std::size_t bytes) {
    if (!error_.empty()) return true;
    const std::size_t before = contents_.size();
    // It may have grown, or not have told its size.
    constexpr std::size_t unknown = 4096;
    const std::size_t room =
        contents_.capacity() > before ? contents_.capacity() - before : std::max(before, unknown);
    contents_.resize(before + std::min(bytes, room));
    ssize_t count = 0;
    do count = ::read(file_.get(), contents_.data() + before, contents_.size() - before);
    while (count < 0 && errno == EINTR);
    if (count < 0) return fail(reasonOf(errno));
    contents_.resize(before + static_cast<std::size_t>(count));
    return contents_.size() > kMaxFileSize ? fail(kTooLarge) : count == 0;
}

std::string readFile(const std::string& path, std::string& contents) {
    FileReading reading(path);
    while (!reading.goOn(kMaxFileSize)) {
    }
    if (reading.error().empty()) contents = reading.takeContents();
    return reading.error();
}

}  // namespace UTILS
