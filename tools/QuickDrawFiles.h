#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "model/FileVersion.h"

namespace OverlayEditor {

/// The highest number in the names of the quick shapes' files in a directory ("Circle_12.zel"), 0 for none.
int highestQuickShapeNumber(const std::string& directory);

/// A quick shape's file, by which it is told that somebody has saved over it since it was written.
class WrittenFile {
  public:
    /// \param text what has just been written to the file
    WrittenFile(const std::string& path, std::string_view text);

    /// The file is there, with its text, and nobody has written it since, not even the same.
    bool isUntouched() const;

  private:
    using Time = std::filesystem::file_time_type;
    Time lastWriteTime_() const;

    std::string path_;
    FileVersion version_;
    Time time_;
};

}  // namespace OverlayEditor
