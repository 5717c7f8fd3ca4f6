#include "platform/confined_directory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>

#include "support/file_tree.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

namespace fs = std::filesystem;
using testing::fileInTree;
using testing::FileTree;
using testing::kDirectoryInTree;
using testing::linkInTree;
using testing::TempDirectory;
using testing::treeOf;
using Names = ConfinedDirectory::Names;

TEST(ConfinedDirectoryOpen, TakesADirectory) {
    const TempDirectory temp;
    EXPECT_TRUE(ConfinedDirectory::open(temp.text()).has_value());
    EXPECT_TRUE(ConfinedDirectory::open(temp.text() + "\\").has_value());
    EXPECT_TRUE(ConfinedDirectory::open(temp.text() + "/.").has_value());
}

TEST(ConfinedDirectoryOpen, TakesALinkToADirectory) {
    const TempDirectory temp;
    temp.write("folder/inner/file", "x");
    fs::create_directory_symlink("folder", temp.path() / "link");
    EXPECT_TRUE(ConfinedDirectory::open(temp.entry("link")).has_value());
    EXPECT_TRUE(ConfinedDirectory::open(temp.entry("link\\inner")).has_value());
}

TEST(ConfinedDirectoryOpen, TakesNothingElse) {
    const TempDirectory temp;
    temp.write("file", "x");
    fs::create_symlink("file", temp.path() / "link");
    fs::create_symlink("missing", temp.path() / "dangling");
    ASSERT_EQ(::mkfifo((temp.path() / "fifo").c_str(), 0666), 0);
    for (const std::string name :
         {"missing", "missing\\child", "file", "file\\child", "link", "dangling", "fifo"}) {
        EXPECT_FALSE(ConfinedDirectory::open(temp.entry(name)).has_value()) << name;
    }
    EXPECT_FALSE(ConfinedDirectory::open("").has_value());
}

TEST(ConfinedDirectoryOpen, ThrowsForWhatIsNotUtf8) {
    EXPECT_THROW(ConfinedDirectory::open("\xFF"), std::range_error);
}

class ConfinedDirectoryTest : public ::testing::Test {
protected:
    ConfinedDirectoryTest() : confined_(open(temp_)) {}

    static ConfinedDirectory open(const TempDirectory& temp) {
        fs::create_directory(temp.path() / "root");
        fs::create_directory(temp.path() / "outside");
        return std::move(ConfinedDirectory::open(temp.entry("root")).value());
    }
    std::string write(const Names& names, const std::string& content) {
        return confined_.writeFile(names, content.data(), content.size());
    }
    fs::path root() const { return temp_.path() / "root"; }
    FileTree tree() const { return treeOf(root()); }
    bool outsideIsEmpty() const { return fs::is_empty(temp_.path() / "outside"); }

    TempDirectory temp_;
    ConfinedDirectory confined_;
};

TEST_F(ConfinedDirectoryTest, MakesDirectoriesAndWhatIsMissingAbove) {
    EXPECT_EQ(confined_.createDirectories({"a", "b"}), "");
    EXPECT_EQ(confined_.createDirectories({"a", "c"}), "");
    EXPECT_EQ(confined_.createDirectories({"a"}), "");
    EXPECT_EQ(
        tree(),
        (FileTree{{"a", kDirectoryInTree}, {"a/b", kDirectoryInTree}, {"a/c", kDirectoryInTree}}));
}

TEST_F(ConfinedDirectoryTest, IsThereItself) {
    EXPECT_EQ(confined_.createDirectories({}), "");
    EXPECT_EQ(confined_.createDirectories({"a"}), "");
    EXPECT_EQ(confined_.createDirectories({}), "");
    EXPECT_EQ(write({"file"}, "at the top"), "");
    EXPECT_EQ(tree(), (FileTree{{"a", kDirectoryInTree}, {"file", fileInTree("at the top")}}));
}

TEST_F(ConfinedDirectoryTest, WritesFilesHereAndThere) {
    EXPECT_EQ(write({"a", "b", "1"}, "one"), "");
    EXPECT_EQ(write({"2"}, "two"), "");
    EXPECT_EQ(write({"a", "3"}, "three"), "");
    EXPECT_EQ(write({"a", "b", "4"}, "four"), "");
    EXPECT_EQ(write({"a", "b", "5"}, "five"), "");
    EXPECT_EQ(write({"b", "6"}, "six"), "");
    EXPECT_EQ(tree(), (FileTree{{"a", kDirectoryInTree},
                                {"a/b", kDirectoryInTree},
                                {"a/b/1", fileInTree("one")},
                                {"2", fileInTree("two")},
                                {"a/3", fileInTree("three")},
                                {"a/b/4", fileInTree("four")},
                                {"a/b/5", fileInTree("five")},
                                {"b", kDirectoryInTree},
                                {"b/6", fileInTree("six")}}));
}

TEST_F(ConfinedDirectoryTest, WritesEveryByteAndNone) {
    const std::string bytes("a\0b\xFF\r\n\x1A", 7);
    EXPECT_EQ(write({"bytes"}, bytes), "");
    EXPECT_EQ(confined_.writeFile({"empty"}, nullptr, 0), "");
    EXPECT_EQ(tree(), (FileTree{{"bytes", fileInTree(bytes)}, {"empty", fileInTree("")}}));
}

TEST_F(ConfinedDirectoryTest, ReplacesAFile) {
    temp_.write("outside/other", "kept");
    fs::create_hard_link(temp_.path() / "outside" / "other", root() / "file");
    EXPECT_EQ(write({"file"}, "new"), "");
    EXPECT_EQ(tree(), (FileTree{{"file", fileInTree("new")}}));
    EXPECT_EQ(temp_.read("outside/other"), "kept");
}

TEST_F(ConfinedDirectoryTest, TellsWhatIsInTheWay) {
    temp_.write("root/file", "x");
    temp_.write("root/folder/file", "x");
    fs::create_directory_symlink("../outside", root() / "link");
    ASSERT_EQ(::mkfifo((root() / "fifo").c_str(), 0666), 0);
    const FileTree before = tree();
    EXPECT_EQ(confined_.createDirectories({"file"}), "a file is where a directory is needed");
    EXPECT_EQ(write({"file", "new"}, "x"), "a file is where a directory is needed");
    EXPECT_EQ(write({"folder"}, "x"), "a directory is where the file is needed");
    EXPECT_EQ(confined_.createDirectories({"link"}), "a symbolic link is in its way");
    EXPECT_EQ(confined_.createDirectories({"link", "new"}), "a symbolic link is in its way");
    EXPECT_EQ(write({"link", "new"}, "x"), "a symbolic link is in its way");
    EXPECT_EQ(write({"link"}, "x"), "a symbolic link is in its way");
    EXPECT_EQ(write({"fifo"}, "x"), "something that is no plain file is in its way");
    EXPECT_EQ(confined_.createDirectories({"fifo"}),
              "something that is no plain file is in its way");
    EXPECT_EQ(tree(), before);
    EXPECT_TRUE(outsideIsEmpty());
}

TEST_F(ConfinedDirectoryTest, GoesOnInTheRightPlaceAfterAFailure) {
    fs::create_directory_symlink("../outside", root() / "link");
    EXPECT_EQ(confined_.createDirectories({"a", "b"}), "");
    EXPECT_NE(confined_.createDirectories({"link"}), "");
    EXPECT_EQ(write({"a", "b", "deep"}, "x"), "");
    EXPECT_NE(write({"link", "c", "file"}, "x"), "");
    EXPECT_EQ(write({"high"}, "x"), "");
    EXPECT_EQ(tree(), (FileTree{{"a", kDirectoryInTree},
                                {"a/b", kDirectoryInTree},
                                {"a/b/deep", fileInTree("x")},
                                {"high", fileInTree("x")},
                                {"link", linkInTree("../outside")}}));
}

TEST_F(ConfinedDirectoryTest, PassesNoLinkThatTakesADirectorysPlaceMeanwhile) {
    EXPECT_EQ(write({"a", "1"}, "x"), "");
    fs::rename(root() / "a", root() / "moved");
    fs::create_directory_symlink("../outside", root() / "a");
    // The directory that was entered, whatever it is called now.
    EXPECT_EQ(write({"a", "2"}, "x"), "");
    EXPECT_EQ(write({"a", "b", "3"}, "x"), "a symbolic link is in its way");
    EXPECT_EQ(tree(), (FileTree{{"a", linkInTree("../outside")},
                                {"moved", kDirectoryInTree},
                                {"moved/1", fileInTree("x")},
                                {"moved/2", fileInTree("x")}}));
    EXPECT_TRUE(outsideIsEmpty());
}

TEST_F(ConfinedDirectoryTest, StaysWhereItWasOpened) {
    fs::rename(root(), temp_.path() / "moved");
    fs::create_directory_symlink("outside", root());
    EXPECT_EQ(write({"a", "file"}, "x"), "");
    EXPECT_EQ(temp_.read("moved/a/file"), "x");
    EXPECT_TRUE(outsideIsEmpty());
}

TEST_F(ConfinedDirectoryTest, CanBeMoved) {
    EXPECT_EQ(confined_.createDirectories({"a"}), "");
    ConfinedDirectory moved = std::move(confined_);
    EXPECT_EQ(moved.writeFile({"a", "file"}, "x", 1), "");
    confined_ = std::move(moved);
    EXPECT_EQ(write({"b", "file"}, "y"), "");
    EXPECT_EQ(tree().at("a/file"), fileInTree("x"));
    EXPECT_EQ(tree().at("b/file"), fileInTree("y"));
}

TEST_F(ConfinedDirectoryTest, LeavesRightsToTheProcesssMask) {
    const mode_t previous = ::umask(027);
    const std::string problem = write({"folder", "file"}, "x");
    ::umask(previous);
    EXPECT_EQ(problem, "");
    EXPECT_EQ(fs::status(root() / "folder").permissions(), fs::perms(0750));
    EXPECT_EQ(fs::status(root() / "folder" / "file").permissions(), fs::perms(0640));
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
