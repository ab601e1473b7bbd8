#include "common/SaveFile.h"

#include <array>
#include <cerrno>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "common/Descriptor.h"
#include "common/Files.h"
#include "common/TemporaryFile.h"

namespace UTILS {
namespace {

/// What saving does with a file that is there.
enum class IfThere { Replace, Refuse };

constexpr const char* kAccessList = "system.posix_acl_access";

/// Whether a link may have been planted: somebody else's, in a directory that everybody may write, unless
/// that is theirs, too.
bool isPlanted(const std::string& link) {
    struct stat found {};
    struct stat directory {};
    if (::lstat(link.c_str(), &found) != 0 || ::stat(directoryOf(link).c_str(), &directory) != 0)
        return false;
    return (directory.st_mode & S_IWOTH) != 0 && found.st_uid != ::geteuid() &&
           found.st_uid != directory.st_uid;
}

/// Follows symbolic links, the last of which may point to a file that does not exist yet. 0 or errno.
int followLinks(std::string& path) {
    constexpr int maxLinks = 40;
    for (int i = 0; i < maxLinks; ++i) {
        std::array<char, 4096> buffer;
        const ssize_t length = ::readlink(path.c_str(), buffer.data(), buffer.size());
        if (length < 0) return errno == EINVAL || errno == ENOENT ? 0 : errno;
        if (static_cast<std::size_t>(length) == buffer.size()) return ENAMETOOLONG;
        if (isPlanted(path)) return EACCES;
        std::string target(buffer.data(), static_cast<std::size_t>(length));
        path = target.starts_with('/') ? target : directoryOf(path) + "/" + target;
    }
    return ELOOP;
}

void copyAttributes(int from, int to) {
    // The directory's default access list is for new files.
    ::fremovexattr(to, kAccessList);
    const ssize_t size = ::flistxattr(from, nullptr, 0);
    if (size <= 0) return;
    std::string names(static_cast<std::size_t>(size), '\0');
    const ssize_t listed = ::flistxattr(from, names.data(), names.size());
    if (listed <= 0) return;
    names.resize(static_cast<std::size_t>(listed));
    for (std::size_t at = 0; at < names.size(); at = names.find('\0', at) + 1) {
        const char* const name = names.c_str() + at;
        const ssize_t length = ::fgetxattr(from, name, nullptr, 0);
        if (length < 0) continue;
        std::vector<char> value(static_cast<std::size_t>(length));
        if (::fgetxattr(from, name, value.data(), value.size()) == length)
            ::fsetxattr(to, name, value.data(), value.size(), 0);
    }
}

/// Owner, group, permissions and attributes of a file, as far as the user may set them.
void takeOver(const std::string& from, int to) {
    struct stat info {};
    if (::stat(from.c_str(), &info) != 0) return;
    mode_t mode = info.st_mode & 07777;
    if (::fchown(to, info.st_uid, info.st_gid) != 0) {
        mode &= 0777;
        // Rights of the old group are not for the user's own one.
        if (::fchown(to, static_cast<uid_t>(-1), info.st_gid) != 0)
            mode = (mode & ~static_cast<mode_t>(S_IRWXG)) | (mode & S_IRWXO) << 3;
    }
    const Descriptor source(::open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (source.isOpen()) copyAttributes(source.get(), to);
    // A file system without permissions has none to keep.
    [[maybe_unused]] const int ignored = ::fchmod(to, mode);
}

/// Gives the file the name `target`, and reads what had it until then. 0 or errno.
int swapIn(TemporaryFile& file, const std::string& target, std::string& replaced) {
    constexpr int maxTries = 20;
    for (int i = 0; i < maxTries; ++i) {
        const int error = file.exchange(target);
        if (error == EINVAL || error == ENOSYS) return file.place(target, true);
        if (error == 0) {
            if (readFile(file.name(), replaced).empty()) return 0;
            // What cannot be read is no file that may go.
            file.exchange(target);
            return EACCES;
        }
        if (error != ENOENT) return error;
        const int placed = file.place(target, false);
        if (placed != EEXIST) return placed;
    }
    return EBUSY;
}

using Write = std::function<int(TemporaryFile&)>;

/// \param like whose owner, permissions and attributes the new file gets; empty for those of a new one
/// \param replaced null, or gets what had the name
std::string writeAndPlace(const std::string& target, const Write& write, IfThere ifThere,
                          const std::string& like, std::string* replaced, Rights rights) {
    const std::string directory = directoryOf(target);
    // Nobody else sees the contents of a private file before it has its mode.
    const mode_t mode = like.empty() && rights == Rights::Usual ? 0666 : 0600;
    int error = 0;
    // What can have no name at first may turn out to get none later, without /proc for one.
    for (const auto kind : {TemporaryFile::Nameless, TemporaryFile::Named}) {
        const auto file = TemporaryFile::create(directory, mode, kind);
        if (!file) {
            error = errno;
            if (kind == TemporaryFile::Named)
                return "no file can be made in " + directory + ": " + reasonOf(error);
            continue;
        }
        error = write(*file);
        if (error == 0 && !like.empty()) takeOver(like, file->descriptor());
        if (error == 0) error = file->flush();
        if (error == 0)
            error = replaced ? swapIn(*file, target, *replaced)
                             : file->place(target, ifThere == IfThere::Replace);
        if (error == 0) break;
    }
    if (error != 0) return reasonOf(error);

    // The new file stands; a file system that cannot flush directories is no failure.
    const Descriptor folder(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.isOpen()) ::fsync(folder.get());
    return {};
}

/// \param target no link
std::string refusalOf(const std::string& target, bool& there) {
    struct stat info {};
    there = ::stat(target.c_str(), &info) == 0;
    if (!there) return errno == ENOENT ? std::string() : reasonOf(errno);
    if (S_ISDIR(info.st_mode)) return reasonOf(EISDIR);
    if (!S_ISREG(info.st_mode)) return kNoFile;
    // Renaming needs no right to write the file itself, but replacing a protected one is no save.
    return ::access(target.c_str(), W_OK) != 0 ? reasonOf(errno) : std::string();
}

std::string saveAt(const std::string& path, const Write& write, IfThere ifThere, std::string like,
                   std::string* replaced = nullptr, Rights rights = Rights::Usual) {
    if (path.empty()) return reasonOf(ENOENT);
    std::string target = path;
    struct stat link {};
    if (ifThere == IfThere::Refuse && ::lstat(path.c_str(), &link) == 0) return reasonOf(EEXIST);
    if (const int error = followLinks(target)) return reasonOf(error);
    removeAbandonedFiles(directoryOf(target));

    bool there = false;
    const std::string refusal = refusalOf(target, there);
    if (!refusal.empty()) return refusal;
    if (there && like.empty()) like = target;
    return writeAndPlace(target, write, ifThere, like, replaced, rights);
}

std::string saveAt(const std::string& path, std::string_view contents, IfThere ifThere, std::string like,
                   std::string* replaced = nullptr, Rights rights = Rights::Usual) {
    if (contents.empty()) return "Nothing to write";
    const Write write = [contents](TemporaryFile& file) { return file.write(contents); };
    return saveAt(path, write, ifThere, std::move(like), replaced, rights);
}

/// Saves under the first free name.
std::string saveFree(const Names& names, std::string_view contents, std::string& path,
                     const std::string& like, Rights rights) {
    const std::string taken = reasonOf(EEXIST);
    std::string error;
    for (int i = 0; i < kMaxNames; ++i) {
        path = names(i);
        error = saveAt(path, contents, IfThere::Refuse, like, nullptr, rights);
        if (error != taken) break;
    }
    return error;
}

}  // namespace

std::string whyNotReplaced(const std::string& path) {
    std::string target = path;
    bool there = false;
    const int error = followLinks(target);
    return error != 0 ? reasonOf(error) : refusalOf(target, there);
}

std::string saveFile(const std::string& path, std::string_view contents, std::string* replaced) {
    return saveAt(path, contents, IfThere::Replace, {}, replaced);
}

std::string saveFile(const std::string& path, const Write& write) {
    return saveAt(path, write, IfThere::Replace, {});
}

std::string saveNewFile(const Names& names, std::string_view contents, std::string& path, Rights rights) {
    return saveFree(names, contents, path, {}, rights);
}

std::string saveCopy(const std::string& original, const Names& names, std::string_view contents,
                     std::string& path) {
    return saveFree(names, contents, path, original, Rights::Usual);
}

}  // namespace UTILS
