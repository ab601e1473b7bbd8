#pragma once

#include <QImage>
#include <compare>
#include <cstdint>
#include <string>

namespace sandbox {

/// A picture that a shape names, in the state of a certain moment: written anew, it is another one.
struct PictureFile {
    std::string path;
    std::int64_t modified = 0;  ///< 0 when there is no such file

    friend auto operator<=>(const PictureFile&, const PictureFile&) = default;
};

/// `name` as an overlay file says it, perhaps in quotes; counted from the directory of that file.
PictureFile findPicture(const std::string& name, const std::string& directory);

/// Whether it has more than 64 million pixels, or is a drawing of more than a megabyte (packed: 100 KiB).
bool isTooLarge(const PictureFile& file);
/// Null when the file cannot be read as a picture, or is too large.
QImage readPicture(const PictureFile& file);
/// Whether readPicture() has a chance; reads no more than the beginning of the file.
bool canReadPicture(const PictureFile& file);

}  // namespace sandbox
