#include <filesystem>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "common/Files.h"
#include "common/SaveFile.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;

TEST(FilesTest, TellsWhyAFileCannotBeRead) {
    const TemporaryDirectory directory;
    const auto path = [&](const char* name) { return directory.path() + "/" + name; };
    using namespace UTILS;
    std::string text = "unchanged";
    EXPECT_EQ(readFile(path("missing"), text), "No such file or directory");
    EXPECT_EQ(readFile(directory.path(), text), "Is a directory");
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(readFile(path("pipe"), text), "Not a regular file");
    EXPECT_FALSE(fileIsFile(path("pipe")));
    ASSERT_EQ(saveFile(path("sparse"), "x"), "");
    fs::resize_file(path("sparse"), std::uintmax_t{1} << 42);
    EXPECT_EQ(readFile(path("sparse"), text), "File too large");
    EXPECT_EQ(text, "unchanged");
    EXPECT_TRUE(fileIsFile(path("sparse")));
    EXPECT_TRUE(fileRemove(path("sparse")));
    EXPECT_FALSE(fileRemove(path("sparse")));
}

}  // namespace
