#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "quavin/files.h"
#include "unit/package/path/path_text.h"

namespace VelmoraQuavin {
namespace {

using testing::textOf;

TEST(Filepath, IsEmptyByDefault) {
    EXPECT_EQ(textOf(Filepath()), "");
}

TEST(Filepath, SeparatorIsOneBackslashOnEverySystem) {
    ASSERT_EQ(Filepath::Separator.size(), 1u);
    EXPECT_EQ(Filepath::Separator[0], 0x5C);
}

TEST(Filepath, KeepsTheTextExactlyAsGiven) {
    for (const char* text : {"a", R"(C:\a\..\b\)", "a\\\\b", "./a//b/", " a ", "\\", "/"}) {
        EXPECT_EQ(textOf(Filepath(text)), text);
    }
}

TEST(Filepath, StoresACopyOfTheText) {
    String text = "a\\b";
    const Filepath path(text);
    text.append("\\c");
    EXPECT_EQ(textOf(path), "a\\b");
}

TEST(Filepath, TextEndsWithAZeroByte) {
    const Filepath path("abc");
    EXPECT_EQ(std::memcmp(path.c_str(), "abc\0", 4), 0);
}

TEST(Filepath, CopiesAreIndependent) {
    Filepath original("a");
    const Filepath copy = original;
    original.append(Filepath("b"));
    EXPECT_EQ(textOf(copy), "a");
    EXPECT_EQ(textOf(original), "a\\b");
}

TEST(FilepathAppend, JoinsWithABackslash) {
    Filepath path("a");
    path.append(Filepath("b"));
    EXPECT_EQ(textOf(path), "a\\b");
}

TEST(FilepathAppend, DoublesATrailingSeparator) {
    Filepath path("a\\");
    path.append(Filepath("b"));
    EXPECT_EQ(textOf(path), "a\\\\b");
}

TEST(FilepathAppend, DoublesALeadingSeparatorOfTheOtherPath) {
    Filepath path("a");
    path.append(Filepath("\\b"));
    EXPECT_EQ(textOf(path), "a\\\\b");
}

TEST(FilepathAppend, AddsASeparatorForAnEmptyPath) {
    Filepath path("a");
    path.append(Filepath());
    EXPECT_EQ(textOf(path), "a\\");
}

TEST(FilepathAppend, AddsASeparatorToAnEmptyPath) {
    Filepath path;
    path.append(Filepath("b"));
    EXPECT_EQ(textOf(path), "\\b");
}

TEST(FilepathAppend, AcceptsThePathItself) {
    Filepath path("a");
    path.append(path);
    EXPECT_EQ(textOf(path), "a\\a");
}

TEST(FilepathAppend, ReturnsThePathSoThatCallsChain) {
    Filepath path("a");
    EXPECT_EQ(&path.append(Filepath("b")).append(Filepath("c")), &path);
    EXPECT_EQ(textOf(path), "a\\b\\c");
}

TEST(FilepathParentPath, IsTheTextBeforeTheLastBackslash) {
    EXPECT_EQ(textOf(Filepath("dir\\file").parent_path()), "dir");
    EXPECT_EQ(textOf(Filepath("a\\b\\c").parent_path()), "a\\b");
    EXPECT_EQ(textOf(Filepath("a\\\\b").parent_path()), "a\\");
}

TEST(FilepathParentPath, DropsOnlyATrailingSeparator) {
    EXPECT_EQ(textOf(Filepath("dir\\").parent_path()), "dir");
    EXPECT_EQ(textOf(Filepath("a\\b\\").parent_path()), "a\\b");
}

TEST(FilepathParentPath, IsEmptyIfTheOnlyBackslashComesFirst) {
    EXPECT_EQ(textOf(Filepath("\\x").parent_path()), "");
    EXPECT_EQ(textOf(Filepath("\\").parent_path()), "");
}

TEST(FilepathParentPath, IsThePathItselfWithoutABackslash) {
    EXPECT_EQ(textOf(Filepath("file").parent_path()), "file");
    EXPECT_EQ(textOf(Filepath().parent_path()), "");
}

TEST(FilepathParentPath, IgnoresForwardSlashes) {
    EXPECT_EQ(textOf(Filepath("a/b").parent_path()), "a/b");
    EXPECT_EQ(textOf(Filepath("a\\b/c").parent_path()), "a");
}

TEST(FilepathParentPath, LeavesThePathUnchanged) {
    const Filepath path("a\\b");
    static_cast<void>(path.parent_path());
    EXPECT_EQ(textOf(path), "a\\b");
}

}  // namespace
}  // namespace VelmoraQuavin
