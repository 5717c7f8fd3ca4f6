#include "package/archive/tar_entry_path.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace VelmoraQuavin::internal {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> namesIn(const std::string& name) {
    const TarEntryPath path = parseTarEntryPath(name);
    EXPECT_EQ(path.refusal, "") << name;
    return path.names;
}

std::string refusalOf(const std::string& name) {
    return parseTarEntryPath(name).refusal;
}

TEST(TarEntryPathTest, SlashesAndBackslashesAreSeparators) {
    EXPECT_THAT(namesIn("file"), ElementsAre("file"));
    EXPECT_THAT(namesIn("a/b/file"), ElementsAre("a", "b", "file"));
    EXPECT_THAT(namesIn("a\\b\\file"), ElementsAre("a", "b", "file"));
    EXPECT_THAT(namesIn("a\\b/file"), ElementsAre("a", "b", "file"));
}

TEST(TarEntryPathTest, EmptyPartsAndSingleDotsAreDropped) {
    EXPECT_THAT(namesIn("./a"), ElementsAre("a"));
    EXPECT_THAT(namesIn(".\\a"), ElementsAre("a"));
    EXPECT_THAT(namesIn("a/./b//c\\.\\/"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(namesIn("a/"), ElementsAre("a"));
    EXPECT_THAT(namesIn("."), IsEmpty());
    EXPECT_THAT(namesIn("./"), IsEmpty());
    EXPECT_THAT(namesIn(".\\./."), IsEmpty());
}

TEST(TarEntryPathTest, OtherNamesWithDotsAreOrdinary) {
    EXPECT_THAT(namesIn("..."), ElementsAre("..."));
    EXPECT_THAT(namesIn(".hidden/..file/file../a..b"),
                ElementsAre(".hidden", "..file", "file..", "a..b"));
    EXPECT_THAT(namesIn(". ./.. /a"), ElementsAre(". .", ".. ", "a"));
}

TEST(TarEntryPathTest, BlanksAndLettersOutsideAsciiAreKept) {
    EXPECT_THAT(namesIn(" my model/größe/模型 "), ElementsAre(" my model", "größe", "模型 "));
}

TEST(TarEntryPathTest, ColonsThatDoNotFollowADriveLetterAreKept) {
    EXPECT_THAT(namesIn("ab:c"), ElementsAre("ab:c"));
    EXPECT_THAT(namesIn("1:x"), ElementsAre("1:x"));
    EXPECT_THAT(namesIn(":x"), ElementsAre(":x"));
    EXPECT_THAT(namesIn("@:x/[:x/`:x/{:x"), ElementsAre("@:x", "[:x", "`:x", "{:x"));
}

TEST(TarEntryPathTest, AnEmptyNameIsRefused) {
    EXPECT_EQ(refusalOf(""), "it has no name");
}

TEST(TarEntryPathTest, AbsoluteNamesAreRefused) {
    for (const std::string name : {"/", "\\", "/etc/passwd", "\\file", "//server/share/file",
                                   R"(\\server\share\file)", R"(\\?\C:\file)", "/.", "/../x"}) {
        EXPECT_EQ(refusalOf(name), "its name is absolute") << name;
    }
}

TEST(TarEntryPathTest, DriveLettersAreRefused) {
    for (const std::string name : {"C:", "C:x", "C:/x", "C:\\x", "c:/x", "a:x", "z:x", "A:x", "Z:x",
                                   "./C:x", ".\\C:x", ".//./C:/x", "C:../x"}) {
        EXPECT_EQ(refusalOf(name), "its name begins with a drive letter") << name;
    }
}

TEST(TarEntryPathTest, TwoDotsAreRefusedAnywhere) {
    for (const std::string name :
         {"..", "../", "..\\", "../x", "..\\x", "./../x", "a/..", "a\\..", "a/../", "a/../b",
          "a/../../x", R"(a\..\..\x)", "a\\../x", "a//..//x", "a/b/c/.."}) {
        EXPECT_EQ(refusalOf(name), "its name contains \"..\"") << name;
    }
}

TEST(TarEntryPathTest, InvalidUtf8IsRefused) {
    // An invalid byte, a truncated sequence, an overlong "/", an overlong ".", a surrogate, and a
    // value past the last code point.
    for (const std::string name : {"\xFF", "a/\xC3", "..\xC0\xAF..", "\xC0\xAE\xC0\xAE/x",
                                   "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
        EXPECT_EQ(refusalOf(name), "its name is not UTF-8");
    }
}

TEST(TarEntryPathTest, NamesAreLimitedTo4096Bytes) {
    std::string longest;
    for (int part = 0; part < 16; ++part) {
        longest += std::string(255, 'n') + "/";
    }
    ASSERT_EQ(longest.size(), 4096u);
    EXPECT_EQ(namesIn(longest).size(), 16u);
    EXPECT_EQ(refusalOf(longest + "n"), "its name is longer than 4096 bytes");
}

TEST(TarEntryPathTest, PartsAreLimitedTo255Bytes) {
    const std::string longest(255, 'n');
    EXPECT_THAT(namesIn("a/" + longest), ElementsAre("a", longest));
    EXPECT_EQ(refusalOf("a/" + longest + "n/b"), "a part of its name is longer than 255 bytes");
}

TEST(TarEntryPathTest, NamesAreLimitedTo128Parts) {
    std::string deepest;
    for (int part = 0; part < 128; ++part) {
        deepest += "d/";
    }
    EXPECT_EQ(namesIn(deepest).size(), 128u);
    EXPECT_EQ(refusalOf(deepest + "d"), "its name has more than 128 parts");
}

TEST(TarEntryPathTest, NamesWhoseLastPartIsADotAreDirectories) {
    for (const char* const name : {".", "x/.", "x\\.", "./."}) {
        EXPECT_TRUE(parseTarEntryPath(name).isDirectory) << name;
    }
    for (const char* const name : {"x", "x.", "./x", "x/.y", "x/..y"}) {
        EXPECT_FALSE(parseTarEntryPath(name).isDirectory) << name;
    }
}

}  // namespace
}  // namespace VelmoraQuavin::internal
