#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace OverlayEditor {

/// A file as the editor last read or wrote it, by which it notices that others have written it since.
class FileVersion {
  public:
    FileVersion() = default;
    FileVersion(std::string path, std::string_view text) : path_(std::move(path)), hash_(hashOf(text)) {}

    /// Empty for no file.
    const std::string& path() const { return path_; }
    bool isOf(const std::string& path) const { return !path.empty() && path == path_; }
    bool is(const std::string& path, std::string_view text) const {
        return isOf(path) && hashOf(text) == hash_;
    }

  private:
    static std::size_t hashOf(std::string_view text) { return std::hash<std::string_view>()(text); }

    std::string path_;
    std::size_t hash_ = 0;
};

}  // namespace OverlayEditor
