#pragma once

#include <compare>
#include <cstdint>
#include <limits>
#include <string>

#include "common/Work.h"

namespace sandbox {

class PictureSink;

/// A picture that a shape names, in the state of a certain moment: written anew, it is another one.
struct PictureFile {
    /// Any other is a time, also 0.
    static constexpr std::int64_t kMissing = std::numeric_limits<std::int64_t>::min();

    std::string path;
    std::int64_t modified = kMissing;  ///< milliseconds since 1970; kMissing when there is no such file

    friend auto operator<=>(const PictureFile&, const PictureFile&) = default;
};

/// `name` as an overlay file says it, perhaps in quotes; counted from the directory of that file.
PictureFile findPicture(const std::string& name, const std::string& directory);

/// Whether the file is what it was.
bool isUnchanged(const PictureFile& file);

/// Finds out what is to be said behind its name: nothing, "cannot be read", "is too large to be shown" (\see
/// the table in docs/reliability.md), "is cut off", or what DrawingFile says. Reads no pixels of PNG and
/// JPEG, only where their pieces lie. What is given is to outlive the work.
Work findFault(const PictureFile& file, std::string& fault);
/// Gives all rows of a picture to the sink, in parts; those that are missing, or damaged, are clear. None at
/// all come when the file cannot be read as a picture, or is too large, or the sink does not want them. What
/// is given is to outlive the work.
Work readPicture(const PictureFile& file, PictureSink& sink);

}  // namespace sandbox
