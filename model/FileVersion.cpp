#include "model/FileVersion.h"

#include <cerrno>
#include <functional>
#include <tuple>
#include <utility>

#include "common/Files.h"

namespace OverlayEditor {

namespace {

/// Of the clocks of file systems: FAT's, and a second of others to spare.
constexpr std::chrono::seconds kCoarsestTick{3};

}  // namespace

FileVersion::FileVersion(std::string path, std::string_view text)
    : path_(std::move(path)), hash_(hashOf(text)) {}

FileVersion FileVersion::read(const std::string& path, std::string& text, std::string& error) {
    // Before reading, as in isOnDisk.
    const auto found = stampOf(path);
    const auto time = std::chrono::steady_clock::now();
    error = UTILS::readFile(path, text);
    FileVersion version(path, text);
    if (!error.empty()) return version;
    version.seen_ = found;
    version.seenSame_ = found.has_value();
    version.seenAt_ = time;
    return version;
}

FileVersion FileVersion::known(std::string path, std::size_t hash) {
    FileVersion version;
    version.path_ = std::move(path);
    version.hash_ = hash;
    return version;
}

std::size_t FileVersion::hashOf(std::string_view text) {
    return std::hash<std::string_view>()(text);
}

bool FileVersion::Stamp::operator==(const Stamp& other) const {
    const auto parts = [](const Stamp& s) {
        return std::tuple(s.device, s.number, s.size, s.written.tv_sec, s.written.tv_nsec, s.changed.tv_sec,
                          s.changed.tv_nsec);
    };
    return parts(*this) == parts(other);
}

std::optional<FileVersion::Stamp> FileVersion::stampOf(const std::string& path) {
    struct stat found {};
    if (::stat(path.c_str(), &found) != 0) return std::nullopt;
    return Stamp{found.st_dev, found.st_ino, found.st_size, found.st_mtim, found.st_ctim};
}

bool FileVersion::isOnDisk() const {
    // Taken before reading: what is written meanwhile is seen the next time.
    const auto now = path_.empty() ? std::nullopt : stampOf(path_);
    if (!now) return false;
    // Read from a clock that nobody sets.
    const auto time = std::chrono::steady_clock::now();
    const bool looksSame = now == seen_;
    if (looksSame && (settled_ || time - seenAt_ < kCoarsestTick)) return seenSame_;
    settled_ = looksSame;
    if (!looksSame) seenAt_ = time;
    std::string text;
    unreadable_ = UTILS::readFile(path_, text);
    seenSame_ = unreadable_.empty() && is(path_, text);
    seen_ = now;
    return seenSame_;
}

std::string FileVersion::whyNot(const std::string& path) const {
    std::string why = unreadable_;
    struct stat found {};
    if (::stat(path.c_str(), &found) != 0) {
        if (errno == ENOENT || errno == ENOTDIR) return "the file is gone";
        // A directory above it may be closed.
        why = UTILS::reasonOf(errno);
    } else if (!S_ISREG(found.st_mode)) {
        return "the file is gone";
    }
    return why.empty() ? why : "the file cannot be read: " + why;
}

}  // namespace OverlayEditor
