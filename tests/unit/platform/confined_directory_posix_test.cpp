// What only POSIX systems have: links that anyone may create, pipes, and the umask. Also
// directories that are moved meanwhile, which the emulator that runs the tests for Windows loses
// track of.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "unit/platform/confined_directory_fixture.h"

namespace VelmoraQuavin::internal::platform {
namespace {

namespace fs = std::filesystem;
using testing::fileInTree;
using testing::FileTree;
using testing::kDirectoryInTree;
using testing::linkInTree;
using testing::TempDirectory;

TEST(ConfinedDirectoryOpen, AcceptsALinkToADirectory) {
    const TempDirectory temp;
    temp.write("folder/inner/file", "x");
    fs::create_directory_symlink("folder", temp.path() / "link");
    EXPECT_TRUE(ConfinedDirectory::open(temp.entry("link")).has_value());
    EXPECT_TRUE(ConfinedDirectory::open(temp.entry("link\\inner")).has_value());
}

TEST(ConfinedDirectoryOpen, RefusesOtherLinksAndPipes) {
    const TempDirectory temp;
    temp.write("file", "x");
    fs::create_symlink("file", temp.path() / "link");
    fs::create_symlink("missing", temp.path() / "dangling");
    ASSERT_EQ(::mkfifo((temp.path() / "fifo").c_str(), 0666), 0);
    for (const std::string name : {"link", "dangling", "fifo"}) {
        EXPECT_FALSE(ConfinedDirectory::open(temp.entry(name)).has_value()) << name;
    }
}

TEST_F(ConfinedDirectoryTest, ReportsLinksAndPipesInTheWay) {
    fs::create_directory_symlink("../outside", root() / "link");
    ASSERT_EQ(::mkfifo((root() / "fifo").c_str(), 0666), 0);
    const FileTree before = tree();
    EXPECT_EQ(confined_.createDirectories({"link"}), "a symbolic link is in its way");
    EXPECT_EQ(confined_.createDirectories({"link", "new"}), "a symbolic link is in its way");
    EXPECT_EQ(write({"link", "new"}, "x"), "a symbolic link is in its way");
    EXPECT_EQ(write({"link"}, "x"), "a symbolic link is in its way");
    EXPECT_EQ(write({"fifo"}, "x"), "something that is not a regular file is in its way");
    EXPECT_EQ(confined_.createDirectories({"fifo"}),
              "something that is not a regular file is in its way");
    EXPECT_EQ(tree(), before);
    EXPECT_TRUE(outsideIsEmpty());
}

TEST_F(ConfinedDirectoryTest, StaysAtTheTopAfterARefusedLink) {
    fs::create_directory_symlink("../outside", root() / "link");
    EXPECT_NE(write({"link", "file"}, "x"), "");
    EXPECT_EQ(write({"file"}, "x"), "");
    EXPECT_EQ(tree(), (FileTree{{"file", fileInTree("x")}, {"link", linkInTree("../outside")}}));
    EXPECT_TRUE(outsideIsEmpty());
}

TEST_F(ConfinedDirectoryTest, DoesNotFollowALinkThatReplacesADirectoryMeanwhile) {
    EXPECT_EQ(write({"a", "1"}, "x"), "");
    fs::rename(root() / "a", root() / "moved");
    fs::create_directory_symlink("../outside", root() / "a");
    // Written to the directory that was entered before, whatever its name is now.
    EXPECT_EQ(write({"a", "2"}, "x"), "");
    EXPECT_EQ(write({"a", "b", "3"}, "x"), "a symbolic link is in its way");
    EXPECT_EQ(tree(), (FileTree{{"a", linkInTree("../outside")},
                                {"moved", kDirectoryInTree},
                                {"moved/1", fileInTree("x")},
                                {"moved/2", fileInTree("x")}}));
    EXPECT_TRUE(outsideIsEmpty());
}

TEST_F(ConfinedDirectoryTest, StaysInTheDirectoryThatWasOpened) {
    fs::rename(root(), temp_.path() / "moved");
    fs::create_directory_symlink("outside", root());
    EXPECT_EQ(write({"a", "file"}, "x"), "");
    EXPECT_EQ(temp_.read("moved/a/file"), "x");
    EXPECT_TRUE(outsideIsEmpty());
}

TEST_F(ConfinedDirectoryTest, PermissionsFollowTheUmask) {
    const mode_t previous = ::umask(027);
    const std::string problem = write({"folder", "file"}, "x");
    ::umask(previous);
    EXPECT_EQ(problem, "");
    EXPECT_EQ(fs::status(root() / "folder").permissions(), fs::perms(0750));
    EXPECT_EQ(fs::status(root() / "folder" / "file").permissions(), fs::perms(0640));
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
