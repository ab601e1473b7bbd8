#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

/// A directory of the test's own, so that tests which run side by side keep out of each other's way; it goes
/// with the object, contents and all.
class TemporaryDirectory {
  public:
    TemporaryDirectory() {
        std::string pattern = std::filesystem::temp_directory_path() / "overlayeditor-XXXXXX";
        if (::mkdtemp(pattern.data())) path_ = pattern;
    }
    ~TemporaryDirectory() {
        std::error_code ignored;
        if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::string& path() const { return path_; }

  private:
    std::string path_;
};
