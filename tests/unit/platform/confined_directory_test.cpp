#include "platform/confined_directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>

#include "unit/platform/confined_directory_fixture.h"

namespace VelmoraQuavin::internal::platform {
namespace {

namespace fs = std::filesystem;
using testing::fileInTree;
using testing::FileTree;
using testing::kDirectoryInTree;
using testing::TempDirectory;

TEST(ConfinedDirectoryOpen, AcceptsADirectory) {
    const TempDirectory temp;
    EXPECT_TRUE(ConfinedDirectory::open(temp.text()).has_value());
    EXPECT_TRUE(ConfinedDirectory::open(temp.text() + "\\").has_value());
    EXPECT_TRUE(ConfinedDirectory::open(temp.text() + "/.").has_value());
}

TEST(ConfinedDirectoryOpen, RefusesAnythingElse) {
    const TempDirectory temp;
    temp.write("file", "x");
    for (const std::string name : {"missing", "missing\\child", "file", "file\\child"}) {
        EXPECT_FALSE(ConfinedDirectory::open(temp.entry(name)).has_value()) << name;
    }
    EXPECT_FALSE(ConfinedDirectory::open("").has_value());
}

TEST(ConfinedDirectoryOpen, ThrowsForInvalidUtf8) {
    EXPECT_THROW(ConfinedDirectory::open("\xFF"), std::range_error);
}

TEST_F(ConfinedDirectoryTest, CreatesDirectoriesAndTheirMissingParents) {
    EXPECT_EQ(confined_.createDirectories({"a", "b"}), "");
    EXPECT_EQ(confined_.createDirectories({"a", "c"}), "");
    EXPECT_EQ(confined_.createDirectories({"a"}), "");
    EXPECT_EQ(
        tree(),
        (FileTree{{"a", kDirectoryInTree}, {"a/b", kDirectoryInTree}, {"a/c", kDirectoryInTree}}));
}

TEST_F(ConfinedDirectoryTest, EmptyNamesMeanTheDirectoryItself) {
    EXPECT_EQ(confined_.createDirectories({}), "");
    EXPECT_EQ(confined_.createDirectories({"a"}), "");
    EXPECT_EQ(confined_.createDirectories({}), "");
    EXPECT_EQ(write({"file"}, "at the top"), "");
    EXPECT_EQ(tree(), (FileTree{{"a", kDirectoryInTree}, {"file", fileInTree("at the top")}}));
}

TEST_F(ConfinedDirectoryTest, WritesFilesInSeveralDirectories) {
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

TEST_F(ConfinedDirectoryTest, WritesAnyBytesAndEmptyFiles) {
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

TEST_F(ConfinedDirectoryTest, ReportsWhatIsInTheWay) {
    temp_.write("root/file", "x");
    temp_.write("root/folder/file", "x");
    const FileTree before = tree();
    EXPECT_EQ(confined_.createDirectories({"file"}), "a file is where a directory is needed");
    EXPECT_EQ(write({"file", "new"}, "x"), "a file is where a directory is needed");
    EXPECT_EQ(write({"folder"}, "x"), "a directory is where the file is needed");
    EXPECT_EQ(tree(), before);
}

TEST_F(ConfinedDirectoryTest, ContinuesInTheRightPlaceAfterAFailure) {
    temp_.write("root/file", "in the way");
    EXPECT_EQ(confined_.createDirectories({"a", "b"}), "");
    EXPECT_NE(confined_.createDirectories({"file"}), "");
    EXPECT_EQ(write({"a", "b", "deep"}, "x"), "");
    EXPECT_NE(write({"file", "c", "new"}, "x"), "");
    EXPECT_EQ(write({"high"}, "x"), "");
    EXPECT_EQ(tree(), (FileTree{{"a", kDirectoryInTree},
                                {"a/b", kDirectoryInTree},
                                {"a/b/deep", fileInTree("x")},
                                {"file", fileInTree("in the way")},
                                {"high", fileInTree("x")}}));
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

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
