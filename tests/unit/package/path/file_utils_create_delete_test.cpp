#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "quavin/files.h"
#include "support/status_matcher.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin {
namespace {

namespace fs = std::filesystem;
using testing::expectThrows;
using testing::TempDirectory;

void expectPathIncorrect(const std::string& path) {
    expectThrows<FileException>([&] { FileUtils::createDir(Filepath(path)); }, FILE_ERROR,
                                "Path incorrect : " + path);
}

void expectCouldNotDelete(const std::string& path) {
    expectThrows<FileException>([&] { FileUtils::deleteFile(Filepath(path)); }, FILE_ERROR,
                                "Could not delete file : " + path);
}

TEST(FileUtilsCreateDir, CreatesOneDirectory) {
    const TempDirectory directory;
    FileUtils::createDir(Filepath(directory.entry("new")));
    EXPECT_TRUE(fs::is_directory(directory.path() / "new"));
}

TEST(FileUtilsCreateDir, AcceptsATrailingSeparator) {
    const TempDirectory directory;
    FileUtils::createDir(Filepath(directory.entry("new\\")));
    EXPECT_TRUE(fs::is_directory(directory.path() / "new"));
}

TEST(FileUtilsCreateDir, LeavesAnExistingDirectoryAlone) {
    const TempDirectory directory;
    directory.write("old/file", "content");
    EXPECT_NO_THROW(FileUtils::createDir(Filepath(directory.entry("old"))));
    EXPECT_EQ(directory.read("old/file"), "content");
}

TEST(FileUtilsCreateDir, LeavesAFileOfThatNameAlone) {
    const TempDirectory directory;
    directory.write("file", "content");
    EXPECT_NO_THROW(FileUtils::createDir(Filepath(directory.entry("file"))));
    EXPECT_EQ(directory.read("file"), "content");
}

TEST(FileUtilsCreateDir, ThrowsWithThePathIfTheParentIsMissing) {
    expectPathIncorrect("missing\\child");
    EXPECT_FALSE(fs::exists("missing"));
}

TEST(FileUtilsCreateDir, DoesNotCreateParents) {
    const TempDirectory directory;
    expectPathIncorrect(directory.entry("missing\\child"));
    EXPECT_TRUE(fs::is_empty(directory.path()));
}

TEST(FileUtilsCreateDir, ThrowsWithThePathIfTheParentIsAFile) {
    const TempDirectory directory;
    directory.write("file", "content");
    expectPathIncorrect(directory.entry("file\\child"));
    EXPECT_EQ(directory.read("file"), "content");
}

TEST(FileUtilsCreateDir, ThrowsForTheEmptyPath) {
    expectPathIncorrect("");
}

TEST(FileUtilsCreateDir, IgnoresANameThatIsTooLong) {
    const TempDirectory directory;
    EXPECT_NO_THROW(FileUtils::createDir(Filepath(directory.entry(std::string(300, 'x')))));
    EXPECT_TRUE(fs::is_empty(directory.path()));
}

TEST(FileUtilsDeleteDir, DoesNotRemoveADirectory) {
    const TempDirectory directory;
    fs::create_directory(directory.path() / "empty");
    directory.write("full/file", "content");
    FileUtils::deleteDir(Filepath(directory.entry("empty")));
    FileUtils::deleteDir(Filepath(directory.entry("full")));
    EXPECT_TRUE(fs::is_directory(directory.path() / "empty"));
    EXPECT_EQ(directory.read("full/file"), "content");
}

TEST(FileUtilsDeleteDir, DoesNotRemoveAFile) {
    const TempDirectory directory;
    directory.write("file", "content");
    FileUtils::deleteDir(Filepath(directory.entry("file")));
    EXPECT_EQ(directory.read("file"), "content");
}

TEST(FileUtilsDeleteDir, NeverFails) {
    const TempDirectory directory;
    EXPECT_NO_THROW(FileUtils::deleteDir(Filepath()));
    EXPECT_NO_THROW(FileUtils::deleteDir(Filepath("\xFF")));
    EXPECT_NO_THROW(FileUtils::deleteDir(Filepath(directory.entry("missing\\child"))));
}

TEST(FileUtilsDeleteFile, RemovesTheFile) {
    const TempDirectory directory;
    directory.write("file", "content");
    directory.write("other", "content");
    FileUtils::deleteFile(Filepath(directory.entry("file")));
    EXPECT_FALSE(fs::exists(directory.path() / "file"));
    EXPECT_TRUE(fs::exists(directory.path() / "other"));
}

TEST(FileUtilsDeleteFile, ThrowsWithThePathOfAMissingFile) {
    const TempDirectory directory;
    expectCouldNotDelete(directory.entry("missing"));
    expectCouldNotDelete(directory.entry("missing\\child"));
}

TEST(FileUtilsDeleteFile, ThrowsForADirectoryAndLeavesIt) {
    const TempDirectory directory;
    fs::create_directory(directory.path() / "empty");
    expectCouldNotDelete(directory.entry("empty"));
    EXPECT_TRUE(fs::is_directory(directory.path() / "empty"));
}

TEST(FileUtilsDeleteFile, ThrowsForTheEmptyPath) {
    expectCouldNotDelete("");
}

}  // namespace
}  // namespace VelmoraQuavin
