#pragma once

#include <QImage>
#include <compare>
#include <cstdint>
#include <limits>
#include <string>

namespace sandbox {

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

/// Empty, or what is to be said behind its name: "cannot be read", "is too large to be shown" (more than 64
/// million pixels, or 128 MiB), "is cut off", or what DrawingFile says. Reads no picture, only where its
/// pieces lie.
std::string whyNotShown(const PictureFile& file);
/// Null when the file cannot be read as a picture, or is too large.
QImage readPicture(const PictureFile& file);

}  // namespace sandbox
