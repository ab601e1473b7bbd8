#include <csignal>
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/Files.h"

namespace {

namespace fs = std::filesystem;
using namespace UTILS;

class FilesTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "files-test-XXXXXX").string();
        ASSERT_TRUE(mkdtemp(pattern.data()));
        directory_ = pattern;
    }
    void TearDown() override { fs::remove_all(directory_); }

    std::string path(const char* name) const { return (directory_ / name).string(); }
    std::string contents(const std::string& file) const {
        std::string text;
        EXPECT_EQ(readFile(file, text), "");
        return text;
    }
    /// Names in the directory, to see that nothing temporary stayed.
    std::size_t entries() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(directory_), {}));
    }

    fs::path directory_;
};

TEST_F(FilesTest, SavesReadsAndRemoves) {
    const std::string file = path("a.zel");
    const std::string text("version 2\n\0\xFF", 12);
    EXPECT_FALSE(fileIsFile(file));
    EXPECT_EQ(saveFile(file, text), "");
    EXPECT_TRUE(fileIsFile(file));
    EXPECT_EQ(contents(file), text);
    EXPECT_EQ(saveFile(file, "shorter"), "");
    EXPECT_EQ(contents(file), "shorter");
    EXPECT_EQ(entries(), 1U);
    EXPECT_TRUE(fileRemove(file));
    EXPECT_FALSE(fileRemove(file));
}

TEST_F(FilesTest, SavesMoreThanOneWriteTakes) {
    const std::string text(9'000'000, 'x');
    ASSERT_EQ(saveFile(path("large"), text), "");
    EXPECT_TRUE(contents(path("large")) == text);
}

TEST_F(FilesTest, KeepsTheModeAndGivesNewFilesTheUsualOne) {
    const std::string file = path("mode");
    const mode_t mask = umask(027);
    ASSERT_EQ(saveFile(file, "a"), "");
    umask(mask);
    struct stat info {};
    ASSERT_EQ(stat(file.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640U);
    ASSERT_EQ(chmod(file.c_str(), 0666), 0);
    ASSERT_EQ(saveFile(file, "b"), "");
    ASSERT_EQ(stat(file.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0666U) << "in spite of the mask";
    ASSERT_EQ(chmod(file.c_str(), 0604), 0);
    ASSERT_EQ(saveFile(file, "b"), "");
    ASSERT_EQ(stat(file.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0604U);
}

TEST_F(FilesTest, SavesThroughSymbolicLinks) {
    fs::create_directory(directory_ / "sub");
    fs::create_symlink("sub/target", directory_ / "link");
    fs::create_symlink("link", directory_ / "second");
    ASSERT_EQ(saveFile(path("second"), "new"), "") << "a link to a file that does not exist yet";
    ASSERT_EQ(saveFile(path("second"), "newer"), "");
    EXPECT_TRUE(fs::is_symlink(directory_ / "second"));
    EXPECT_TRUE(fs::is_symlink(directory_ / "link"));
    EXPECT_EQ(contents(path("sub/target")), "newer");

    fs::create_symlink("loop", directory_ / "loop");
    EXPECT_NE(saveFile(path("loop"), "x"), "");
}

TEST_F(FilesTest, LeavesEverythingAsItWasWhenSavingFails) {
    const std::string file = path("old");
    ASSERT_EQ(saveFile(file, "old"), "");
    EXPECT_NE(saveFile(file, ""), "");
    EXPECT_NE(saveFile(path("no/such/directory"), "x"), "");
    EXPECT_NE(saveFile(directory_.string(), "x"), "");
    EXPECT_NE(saveFile("", "x"), "");
    EXPECT_NE(saveFile("/dev/null", "x"), "");

    // A full disk: the write comes back short, then fails.
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit small{1000, limit.rlim_max};
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string reason = saveFile(file, std::string(5000, 'x'));
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, oldHandler);

    EXPECT_EQ(reason, "File too large");
    EXPECT_EQ(contents(file), "old");
    EXPECT_EQ(entries(), 1U);
}

TEST_F(FilesTest, RespectsAWriteProtectedFile) {
    if (geteuid() == 0) GTEST_SKIP() << "nothing is protected from root";
    const std::string file = path("protected");
    ASSERT_EQ(saveFile(file, "old"), "");
    ASSERT_EQ(chmod(file.c_str(), 0400), 0);
    EXPECT_EQ(saveFile(file, "new"), "Permission denied");
    EXPECT_EQ(contents(file), "old");
}

TEST_F(FilesTest, TellsWhyAFileCannotBeRead) {
    std::string text = "unchanged";
    EXPECT_EQ(readFile(path("missing"), text), "No such file or directory");
    EXPECT_EQ(readFile(directory_.string(), text), "Is a directory");
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(readFile(path("pipe"), text), "Not a regular file");
    EXPECT_FALSE(fileIsFile(path("pipe")));
    ASSERT_EQ(saveFile(path("sparse"), "x"), "");
    fs::resize_file(path("sparse"), std::uintmax_t{1} << 42);
    EXPECT_EQ(readFile(path("sparse"), text), "File too large");
    EXPECT_EQ(text, "unchanged");
}

}  // namespace
