#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <sys/stat.h>

namespace OverlayEditor {

/// A file as the editor last read or wrote it, by which it notices that others have written or deleted it
/// since.
class FileVersion {
  public:
    FileVersion() = default;
    /// \param text what has just been read from the file or written to it
    FileVersion(std::string path, std::string_view text);

    /// One of a file that is read now. It need not be read again as long as it looks the same.
    /// \param text gets what it holds \param error gets why that cannot be read, as UTILS::readFile tells it
    static FileVersion read(const std::string& path, std::string& text, std::string& error);
    /// One that was known before, by its hash.
    static FileVersion known(std::string path, std::size_t hash);
    std::size_t hash() const { return hash_; }

    /// Empty for no file.
    const std::string& path() const { return path_; }
    bool isOf(const std::string& path) const { return !path.empty() && path == path_; }
    bool is(const std::string& path, std::string_view text) const {
        return isOf(path) && hashOf(text) == hash_;
    }
    /// Whether the file has this text now; false for no file. It is read only when its time or size have
    /// changed since the last call, and once more a while after that: two changes within a tick of the file
    /// system's clock have the same time.
    bool isOnDisk() const;
    /// Why it is not in the file of that name, for the user: "the file is gone". Empty when something else
    /// stands there.
    std::string whyNot(const std::string& path) const;

  private:
    /// What tells without reading that a file is as it was.
    struct Stamp {
        dev_t device = 0;
        ino_t number = 0;
        off_t size = 0;
        timespec written{};
        timespec changed{};
        bool operator==(const Stamp& other) const;
    };
    static std::optional<Stamp> stampOf(const std::string& path);
    static std::size_t hashOf(std::string_view text);

    std::string path_;
    std::size_t hash_ = 0;
    /// The file when it was looked at last, and what was seen.
    mutable std::optional<Stamp> seen_;
    mutable bool seenSame_ = false;
    /// Whether it was read so late that each later change has another time; else when it was read first.
    mutable bool settled_ = false;
    mutable std::chrono::steady_clock::time_point seenAt_;
    /// Why it could not be read then, empty when it could.
    mutable std::string unreadable_;
};

}  // namespace OverlayEditor
