#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace UTILS {

class TemporaryFile;

/// The one way a file of the user's is saved: all of it is written to a temporary file in the same directory
/// and flushed to disk before it takes the name, and then the directory is flushed. Whatever happens
/// meanwhile, the disk holds the old file or the new one, whole. A symbolic link stays, and what it points to
/// is replaced, unless the link is somebody else's in a directory where everybody may plant one; another hard
/// link keeps the old file. Permissions and extended attributes are kept, owner and group as far as the user
/// may. What dead processes left of temporary files there is deleted.
/// \return an empty text, or why it failed ("the disk is full"); then the old file stands untouched,
///         and no temporary file is left. Empty contents are refused, as is what is no regular file or may
///         not be written.
/// \param replaced null, or gets what stood there at the very moment of saving: others may save there, too,
///        and it may not be what the caller has read before. Empty when nothing stood there, or where the
///        file system cannot tell.
std::string saveFile(const std::string& path, std::string_view contents, std::string* replaced = nullptr);
/// The same with contents that are written as they are made.
/// \param write has all of them written to the temporary file, perhaps a second time to another one; returns
/// 0
///        or errno
std::string saveFile(const std::string& path, const std::function<int(TemporaryFile&)>& write);

/// Why a file that stands there may not be replaced, in saveFile's words; empty when it may, or there is
/// none.
std::string whyNotReplaced(const std::string& path);

/// The path to try first (0), second (1), ...
using Names = std::function<std::string(int)>;
inline constexpr int kMaxNames = 100;

enum class Rights { Usual, OwnersAlone };

/// Saves under the first name that is free, also when others look for one at the same time. A link is not
/// followed: its name is taken.
/// \param path the name that was taken or, on failure, tried last
/// \return as saveFile; "a file of this name exists" after kMaxNames names
std::string saveNewFile(const Names& names, std::string_view contents, std::string& path,
                        Rights rights = Rights::Usual);
/// Saves the contents of `original` under another name, with its permissions and attributes. \see saveNewFile
std::string saveCopy(const std::string& original, const Names& names, std::string_view contents,
                     std::string& path);

}  // namespace UTILS
