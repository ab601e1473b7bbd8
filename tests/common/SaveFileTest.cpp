#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "common/Files.h"
#include "common/SaveFile.h"
#include "common/TemporaryFile.h"
#include "support/Child.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using namespace UTILS;

class SaveFileTest : public testing::Test {
  protected:
    std::string path(const std::string& name) const { return directory_ + "/" + name; }
    static std::string contents(const std::string& file) {
        std::string text;
        EXPECT_EQ(readFile(file, text), "");
        return text;
    }
    static void write(const std::string& file, const std::string& text) { std::ofstream(file) << text; }
    static struct stat info(const std::string& file) {
        struct stat result {};
        EXPECT_EQ(::stat(file.c_str(), &result), 0) << file;
        return result;
    }
    static unsigned mode(const std::string& file) { return info(file).st_mode & 07777; }
    /// Names in the directory, to see that nothing temporary stayed.
    std::size_t entries() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(directory_), {}));
    }
    /// Under this name or, when it is taken, with a 2 behind it.
    static std::string saveNew(const std::string& file, const std::string& text) {
        std::string taken;
        return saveNewFile([&](int i) { return i == 0 ? file : file + "2"; }, text, taken);
    }
    /// The directory and what is in it belong to the user without rights.
    void giveAway() const {
        if (::geteuid() != 0) return;
        EXPECT_EQ(::chown(directory_.c_str(), kNobody, kNobody), 0);
        for (const auto& entry : fs::directory_iterator(directory_))
            EXPECT_EQ(::lchown(entry.path().c_str(), kNobody, kNobody), 0);
    }

    const TemporaryDirectory temporary_;
    const std::string directory_ = temporary_.path();
};

TEST_F(SaveFileTest, TellsWhyAFileCannotBeRead) {
    std::string text = "unchanged";
    EXPECT_EQ(readFile(path("missing"), text), "it does not exist");
    EXPECT_EQ(readFile(directory_, text), "a directory has this name");
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(readFile(path("pipe"), text), "what has this name is no file");
    EXPECT_FALSE(fileIsFile(path("pipe")));
    ASSERT_EQ(saveFile(path("sparse"), "x"), "");
    fs::resize_file(path("sparse"), std::uintmax_t{1} << 42);
    EXPECT_EQ(readFile(path("sparse"), text), "It is larger than 1 GiB, the most that is read");
    EXPECT_EQ(text, "unchanged");
    EXPECT_TRUE(fileRemove(path("sparse")));
    EXPECT_FALSE(fileRemove(path("sparse")));
}

TEST_F(SaveFileTest, WritesAllOfIt) {
    const std::string file = path("a.zel");
    const std::string text("version 2\n\0\xFF", 12);
    EXPECT_EQ(saveFile(file, text), "");
    EXPECT_EQ(contents(file), text);
    EXPECT_EQ(saveFile(file, "shorter"), "");
    EXPECT_EQ(contents(file), "shorter");
    const std::string large(9'000'000, 'x');
    EXPECT_EQ(saveFile(file, large), "");
    EXPECT_TRUE(contents(file) == large);
    EXPECT_EQ(entries(), 1u);
}

TEST_F(SaveFileTest, TakesAnyName) {
    const std::vector<std::string> names{"two  blanks.zel",
                                         "\xC3\x84rmelkanal \xE6\xB5\xB7.zel",
                                         "not \xFF utf8",
                                         "line\nbreak",
                                         "-rf",
                                         "%s \"quoted\" $HOME;",
                                         std::string(255, 'n')};
    for (const std::string& name : names) {
        EXPECT_EQ(saveFile(path(name), "first"), "") << name;
        EXPECT_EQ(saveFile(path(name), name), "") << name;
        EXPECT_EQ(contents(path(name)), name);
    }
    EXPECT_EQ(saveFile(path(std::string(256, 'n')), "x"), "the name is too long");
    EXPECT_EQ(entries(), names.size());

    const fs::path before = fs::current_path();
    fs::current_path(directory_);
    EXPECT_EQ(saveFile("bare.zel", "x"), "");
    fs::current_path(before);
    EXPECT_EQ(contents(path("bare.zel")), "x");
}

TEST_F(SaveFileTest, KeepsPermissionsAndGivesNewFilesTheUsualOnes) {
    const std::string file = path("mode");
    const mode_t mask = umask(027);
    ASSERT_EQ(saveFile(file, "a"), "");
    umask(mask);
    EXPECT_EQ(mode(file), 0640u);
    for (const unsigned kept : {0666u, 0604u, 0600u, 0775u}) {
        ASSERT_EQ(chmod(file.c_str(), kept), 0);
        ASSERT_EQ(saveFile(file, "b"), "");
        EXPECT_EQ(mode(file), kept) << "whatever the mask";
    }

    // A copy of a private file is private. It never replaces an older one.
    ASSERT_EQ(chmod(file.c_str(), 0600), 0);
    const auto numbered = [&](int i) { return file + "~" + std::to_string(i); };
    std::string copy;
    for (int i = 0; i < kMaxNames; ++i) {
        ASSERT_EQ(saveCopy(file, numbered, std::to_string(i), copy), "");
        ASSERT_EQ(copy, numbered(i));
        EXPECT_EQ(mode(copy), 0600u);
    }
    EXPECT_EQ(saveCopy(file, numbered, "x", copy), "a file of this name exists");
    EXPECT_EQ(copy, numbered(99)) << "the last one that was tried";
    ASSERT_EQ(saveNewFile([&](int) { return path("private"); }, "x", copy, Rights::OwnersAlone), "");
    EXPECT_EQ(mode(copy), 0600u);
    copy = numbered(99);
    EXPECT_EQ(contents(numbered(0)), "0");
    EXPECT_EQ(contents(copy), "99");
}

TEST_F(SaveFileTest, KeepsAttributesAndAccessLists) {
    const std::string listed = path("listed"), plain = path("plain");
    write(listed, "old");
    write(plain, "old");
    // User rw, user 4242 rw, group r, mask rw, others nothing.
    using namespace std::string_literals;
    const std::string list =
        "\2\0\0\0\1\0\6\0\xFF\xFF\xFF\xFF\2\0\6\0\x92\x10\0\0\4\0\4\0\xFF\xFF\xFF\xFF"
        "\x10\0\6\0\xFF\xFF\xFF\xFF\x20\0\0\0\xFF\xFF\xFF\xFF"s;
    const auto set = [](const std::string& file, const char* name, const std::string& value) {
        return ::setxattr(file.c_str(), name, value.data(), value.size(), 0) == 0;
    };
    if (!set(listed, "user.origin", "chart 7") || !set(listed, "system.posix_acl_access", list) ||
        !set(directory_, "system.posix_acl_default", list))
        GTEST_SKIP() << "this file system has no attributes or access lists";
    for (const std::string& file : {listed, plain}) ASSERT_EQ(saveFile(file, "new"), "");
    const auto get = [](const std::string& file, const char* name) {
        std::string value(100, ' ');
        const ssize_t size = ::getxattr(file.c_str(), name, value.data(), value.size());
        return value.substr(0, size < 0 ? 0 : static_cast<std::size_t>(size));
    };
    EXPECT_EQ(get(listed, "user.origin"), "chart 7");
    EXPECT_EQ(get(listed, "system.posix_acl_access"), list);
    EXPECT_EQ(get(plain, "system.posix_acl_access"), "") << "the directory's list is for new files";
}

TEST_F(SaveFileTest, KeepsOwnerAndGroupAsFarAsTheUserMay) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can give files to others";
    const std::string file = path("theirs");
    write(file, "old");
    ASSERT_EQ(::chown(file.c_str(), 4242, 4343), 0);
    ASSERT_EQ(chmod(file.c_str(), 02664), 0);
    ASSERT_EQ(saveFile(file, "root's"), "");
    EXPECT_EQ(info(file).st_uid, 4242u);
    EXPECT_EQ(info(file).st_gid, 4343u);
    EXPECT_EQ(mode(file), 02664u);

    // Without root's rights the file is the user's, and rights of the old group are not for the new one.
    ASSERT_EQ(::chown(directory_.c_str(), kNobody, kNobody), 0);
    for (const auto& [group, before, after] : std::vector<std::tuple<unsigned, unsigned, unsigned>>{
             {kNobody, 0664, 0664}, {4343, 0606, 0666}, {4343, 06676, 0666}}) {
        ASSERT_EQ(::chown(file.c_str(), 4242, group), 0);
        ASSERT_EQ(chmod(file.c_str(), before), 0);
        EXPECT_EQ(inChild([&] { return becomeNobody() ? saveFile(file, "nobody's") : "still root"; }), "");
        EXPECT_EQ(info(file).st_uid, kNobody);
        EXPECT_EQ(info(file).st_gid, kNobody);
        EXPECT_EQ(mode(file), after);
    }
}

TEST_F(SaveFileTest, KeepsSymbolicLinksAndPartsHardOnes) {
    fs::create_directory(path("sub"));
    fs::create_symlink("sub/target", path("link"));
    fs::create_symlink("link", path("second"));
    ASSERT_EQ(saveFile(path("second"), "new"), "") << "a link to a file that does not exist yet";
    ASSERT_EQ(saveFile(path("second"), "newer"), "");
    EXPECT_TRUE(fs::is_symlink(path("second")));
    EXPECT_TRUE(fs::is_symlink(path("link")));
    EXPECT_EQ(contents(path("sub/target")), "newer");

    fs::create_symlink("nowhere", path("planted"));
    ASSERT_EQ(saveNew(path("planted"), "x"), "");
    EXPECT_TRUE(fileIsFile(path("planted2")) && !fs::exists(path("nowhere"))) << "the name is taken";
    fs::create_symlink("loop", path("loop"));
    EXPECT_EQ(saveFile(path("loop"), "x"), "the links lead in a circle");

    fs::create_hard_link(path("sub/target"), path("other name"));
    ASSERT_EQ(saveFile(path("sub/target"), "newest"), "");
    EXPECT_EQ(contents(path("other name")), "newer");
}

TEST_F(SaveFileTest, RefusesWhatIsNoFileOrEmpty) {
    const std::string file = path("old");
    ASSERT_EQ(saveFile(file, "old"), "");
    fs::create_symlink("/dev/full", path("full"));
    const std::string gone = path("no/such");
    const std::vector<std::vector<std::string>> table{
        {file, "", "Nothing to write"},
        {directory_, "x", "a directory has this name"},
        {"", "x", "it does not exist"},
        {gone + "/a.zel", "x", "no file can be made in " + gone + ": it does not exist"},
        {file + "/a.zel", "x", "a part of the path is no directory"},
        {"/dev/full", "x", "what has this name is no file"},
        {"/dev/null", "x", "what has this name is no file"},
        {path("full"), "x", "what has this name is no file"},
    };
    for (const auto& row : table) EXPECT_EQ(saveFile(row[0], row[1]), row[2]) << row[0];
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
    EXPECT_EQ(contents(file), "old");
    EXPECT_EQ(entries(), 2u);
}

/// A write comes back short, then fails.
TEST_F(SaveFileTest, AShortWriteLeavesTheOldFile) {
    const std::string file = path("old");
    ASSERT_EQ(saveFile(file, "old"), "");
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit small{1000, limit.rlim_max};
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string limited = saveFile(file, std::string(5000, 'x'));
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(limited, "the file is too large");
    EXPECT_EQ(contents(file), "old");
    EXPECT_EQ(entries(), 1u);
}

TEST_F(SaveFileTest, MissingRightsAreNamed) {
    const std::string file = path("mine");
    write(file, "old");
    giveAway();
    const auto attempt = [&](const std::string& where) {
        return inChild([&] { return becomeNobody() ? saveFile(where, "new") : "still root"; });
    };
    ASSERT_EQ(chmod(file.c_str(), 0444), 0);
    EXPECT_EQ(attempt(file), "you have no permission") << "a file that became read-only";
    ASSERT_EQ(chmod(file.c_str(), 0644), 0);
    ASSERT_EQ(chmod(directory_.c_str(), 0555), 0);
    EXPECT_EQ(attempt(file), "no file can be made in " + directory_ + ": you have no permission");
    EXPECT_EQ(attempt(path("new")), "no file can be made in " + directory_ + ": you have no permission");
    ASSERT_EQ(chmod(directory_.c_str(), 0000), 0);
    EXPECT_EQ(attempt(file), "you have no permission");
    ASSERT_EQ(chmod(directory_.c_str(), 0333), 0);
    EXPECT_EQ(attempt(file), "") << "a directory that cannot be listed";
    ASSERT_EQ(chmod(directory_.c_str(), 0755), 0);
    EXPECT_EQ(contents(file), "new");
    EXPECT_EQ(entries(), 1u);
}

/// System calls that fail: the old file, or the way around.
TEST_F(SaveFileTest, AFailingSystemLeavesOneWholeFile) {
    struct Fault {
        std::vector<long> calls;
        int error;
        std::string reason;
    };
    std::vector<long> renames{SYS_renameat2};
#ifdef SYS_rename
    renames.push_back(SYS_rename);
#endif
#ifdef SYS_renameat
    renames.push_back(SYS_renameat);
#endif
    const std::vector<Fault> faults{{{SYS_fsync}, EIO, "the disk has failed"},
                                    {{SYS_write}, EDQUOT, "your share of the disk is full"},
                                    {renames, EBUSY, "another program uses it"},
                                    {{SYS_linkat}, EPERM, ""},
                                    {{SYS_flock}, ENOLCK, ""},
                                    {{SYS_fchown, SYS_fchmod}, EPERM, ""},
                                    {{SYS_renameat2}, EINVAL, ""},
                                    {{SYS_getdents64}, EIO, ""}};
    const std::string file = path("a.zel");
    for (const bool nameless : {true, false})
        for (const Fault& fault : faults) {
            for (const bool isThere : {true, false}) {
                fs::remove(file);
                if (isThere) write(file, "old");
                std::string reason;
                SteppedChild child([&] {
                    if (!nameless && !makeNamelessFilesFail()) return 3;
                    if (!makeFail(fault.calls, fault.error)) return 3;
                    reason = isThere ? saveFile(file, "new") : saveNew(file, "new");
                    return reason == fault.reason ? 0 : 1;
                });
                while (child.step()) continue;
                if (child.untraceable() || child.result() == 3)
                    GTEST_SKIP() << "processes cannot be traced or restricted here";
                EXPECT_EQ(child.result(), 0) << fault.calls.front() << " " << fault.reason;
                const bool saved = fault.reason.empty();
                const bool stands = saved || isThere;
                EXPECT_EQ(fileIsFile(file), stands);
                EXPECT_EQ(stands ? contents(file) : "", !stands ? "" : saved ? "new" : "old");
                EXPECT_EQ(entries(), stands ? 1u : 0u) << fault.calls.front();
            }
        }
}

/// Runs `save` in processes of their own, and `meanwhile` at one stop after the other: behind each system
/// call. `meanwhile` may kill the process; `check` is told what became of it.
void atEveryStop(const std::function<int()>& save, const std::function<void(SteppedChild&)>& meanwhile,
                 const std::function<void(const SteppedChild&)>& check) {
    constexpr int kTooMany = 1000;
    for (int stop = 1; stop < kTooMany; ++stop) {
        SteppedChild child(save);
        if (child.untraceable()) GTEST_SKIP() << "processes cannot be traced here";
        bool alive = true;
        for (int i = 0; alive && i < stop; ++i) alive = child.step();
        SCOPED_TRACE("stop " + std::to_string(stop));
        if (alive) meanwhile(child);
        while (child.step()) continue;
        check(child);
        if (testing::Test::HasFatalFailure()) return;
        if (!alive) {
            EXPECT_GT(stop, 10);
            return;
        }
    }
    FAIL() << "it never ends";
}

class Interrupted : public SaveFileTest, public testing::WithParamInterface<bool> {
  protected:
    /// In a process of its own.
    int save(const std::string& file, const std::string& text) const {
        if (!GetParam() && !makeNamelessFilesFail()) return 3;
        return saveFile(file, text).empty() ? 0 : 1;
    }
    const std::string file_ = path("a.zel");
    const std::string old_ = std::string(20'000, 'o');
    const std::string new_ = std::string(30'000, 'n');
};

TEST_P(Interrupted, AKilledProcessLeavesTheOldFileOrTheNewOne) {
    fs::create_symlink("a.zel", path("link"));
    for (const bool isThere : {true, false}) {
        std::size_t seenOld = 0;
        std::size_t seenNew = 0;
        const auto prepare = [&] { isThere ? write(file_, old_) : static_cast<void>(fs::remove(file_)); };
        prepare();
        atEveryStop([&] { return save(path("link"), new_); }, [](SteppedChild& child) { child.kill(); },
                    [&](const SteppedChild&) {
                        if (isThere || fileIsFile(file_)) {
                            const std::string now = contents(file_);
                            ASSERT_TRUE(now == new_ || (isThere && now == old_));
                            ++(now == new_ ? seenNew : seenOld);
                        }
                        // What the next start does.
                        removeAbandonedFiles(directory_);
                        EXPECT_EQ(entries(), fileIsFile(file_) ? 2u : 1u);
                        prepare();
                    });
        EXPECT_GT(seenNew, 0u);
        EXPECT_EQ(seenOld > 0, isThere);
    }
}

/// Each of the two looks for what dead ones left, and takes nothing that is being written.
TEST_P(Interrupted, TwoThatSaveTheSameFileLeaveOneWholeFile) {
    const std::string theirs(40'000, 't');
    bool seenNew = false;
    bool seenTheirs = false;
    write(file_, old_);
    atEveryStop([&] { return save(file_, new_); },
                [&](SteppedChild&) { EXPECT_EQ(saveFile(file_, theirs), ""); },
                [&](const SteppedChild& child) {
                    EXPECT_EQ(child.result(), 0);
                    const std::string now = contents(file_);
                    ASSERT_TRUE(now == new_ || now == theirs);
                    (now == new_ ? seenNew : seenTheirs) = true;
                    EXPECT_EQ(entries(), 1u);
                    write(file_, old_);
                });
    EXPECT_TRUE(seenNew);
    EXPECT_TRUE(seenTheirs);
}

TEST_P(Interrupted, ANewFileNeverReplacesOneThatAppearsMeanwhile) {
    std::size_t seenFirst = 0;
    std::size_t seenSecond = 0;
    atEveryStop([&] { return !GetParam() && !makeNamelessFilesFail() ? 3 : !saveNew(file_, new_).empty(); },
                [&](SteppedChild&) { EXPECT_EQ(saveNew(file_, "theirs"), ""); },
                [&](const SteppedChild& child) {
                    EXPECT_EQ(child.result(), 0);
                    ++(contents(file_) == new_ ? seenFirst : seenSecond);
                    if (entries() == 2) {
                        EXPECT_EQ(contents(file_).size() + contents(file_ + "2").size(), new_.size() + 6);
                    }
                    fs::remove(file_);
                    fs::remove(file_ + "2");
                    EXPECT_EQ(entries(), 0u);
                });
    EXPECT_GT(seenFirst, 1u);
    EXPECT_GT(seenSecond, 1u);
}

INSTANTIATE_TEST_SUITE_P(SaveFile, Interrupted, testing::Values(true, false),
                         [](const auto& info) { return info.param ? "WithoutAName" : "WithAName"; });

TEST_F(SaveFileTest, OnlyOwnTemporaryFilesAreRemoved) {
    const std::vector<std::string> others{".overlayeditor-save-",      ".overlayeditor-save-1",
                                          ".overlayeditor-save-1-x",   ".overlayeditor-save-1-2~",
                                          "overlayeditor-save-1-2",    ".save-1-2",
                                          ".overlayeditor-save-1-2-3", ".overlayeditor-save--2"};
    for (const std::string& name : others) write(path(name), "x");
    fs::create_symlink(".save-1-2", path(".overlayeditor-save-7-7"));
    fs::create_directory(path(".overlayeditor-save-8-8"));
    write(path(".overlayeditor-save-1-2"), "abandoned");
    removeAbandonedFiles(directory_);
    EXPECT_FALSE(fileIsFile(path(".overlayeditor-save-1-2")));
    EXPECT_EQ(entries(), others.size() + 2);
    removeAbandonedFiles(path("missing"));

    if (::geteuid() != 0) return;
    write(path(".overlayeditor-save-1-2"), "another user's");
    ASSERT_EQ(::chown(path(".overlayeditor-save-1-2").c_str(), kNobody, kNobody), 0);
    removeAbandonedFiles(directory_);
    EXPECT_TRUE(fileIsFile(path(".overlayeditor-save-1-2")));
}

}  // namespace
