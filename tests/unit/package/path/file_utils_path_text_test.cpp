// How the operations read the text of a path: separators, names outside ASCII, zero bytes.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "quavin/files.h"
#include "support/status_matcher.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin {
namespace {

namespace fs = std::filesystem;
using testing::TempDirectory;

std::string readAll(const Filepath& path) {
    uint64 size = 0;
    const std::unique_ptr<char[]> bytes = FileUtils::readBinaryFileToBuffer(path, size);
    return bytes == nullptr ? "(cannot be opened)" : std::string(bytes.get(), size);
}

// Expects every file operation to reach the file at `path`.
void expectReachable(const Filepath& path) {
    EXPECT_TRUE(FileUtils::writeBinaryDataToFile("12345", 5, path));
    EXPECT_TRUE(FileUtils::pathExists(path));
    EXPECT_EQ(FileUtils::getFileSize(path), 5u);
    EXPECT_EQ(readAll(path), "12345");
    EXPECT_TRUE(FileUtils::writeStringToFile("text", path));
    char buffer[5] = "";
    uint64 size = 0;
    FileUtils::readBinaryFileToAllocated(path, size, buffer);
    EXPECT_EQ(std::string(buffer, size), "text");
    EXPECT_TRUE(FileUtils::openFileToWriteBinaryData(path).is_open());
}

TEST(FileUtilsPathText, BackslashesAreSeparators) {
    const TempDirectory directory;
    FileUtils::createDir(Filepath(directory.entry("a")));
    FileUtils::createDir(Filepath(directory.entry("a\\b")));
    expectReachable(Filepath(directory.entry("a\\b\\file")));
    EXPECT_TRUE(fs::is_regular_file(directory.path() / "a" / "b" / "file"));
    FileUtils::deleteFile(Filepath(directory.entry("a\\b\\file")));
    EXPECT_TRUE(fs::is_empty(directory.path() / "a" / "b"));
}

TEST(FileUtilsPathText, ForwardSlashesAreSeparatorsToo) {
    const TempDirectory directory;
    FileUtils::createDir(Filepath(directory.text() + "/a"));
    FileUtils::createDir(Filepath(directory.text() + "/a\\b"));
    expectReachable(Filepath(directory.text() + "\\a/b\\file"));
    EXPECT_TRUE(fs::is_regular_file(directory.path() / "a" / "b" / "file"));
    FileUtils::deleteFile(Filepath(directory.text() + "/a/b/file"));
    EXPECT_TRUE(fs::is_empty(directory.path() / "a" / "b"));
}

TEST(FileUtilsPathText, DoubledSeparatorsCountAsOne) {
    const TempDirectory directory;
    Filepath path(directory.text() + "\\");
    path.append(Filepath("file"));
    expectReachable(path);
    EXPECT_TRUE(fs::is_regular_file(directory.path() / "file"));
}

TEST(FileUtilsPathText, NamesMayBeOutsideAscii) {
    const TempDirectory directory;
    const std::string name = "zażółć-名前-😀";
    fs::create_directory(directory.path() / fs::u8path(name));
    const Filepath path(directory.entry(name + "\\" + name));
    expectReachable(path);
    EXPECT_TRUE(fs::is_regular_file(directory.path() / fs::u8path(name) / fs::u8path(name)));
    EXPECT_FALSE(FileUtils::pathExists(Filepath(directory.entry("名"))));
}

TEST(FileUtilsPathText, ThePathEndsAtTheFirstZeroByte) {
    const TempDirectory directory;
    const std::string junk("\0\\junk\xFF", 7);
    FileUtils::createDir(Filepath(directory.entry("folder") + junk));
    EXPECT_TRUE(fs::is_directory(directory.path() / "folder"));
    expectReachable(Filepath(directory.entry("file") + junk));
    EXPECT_TRUE(fs::is_regular_file(directory.path() / "file"));
    EXPECT_FALSE(FileUtils::pathExists(Filepath(directory.entry("missing") + junk)));
    FileUtils::deleteFile(Filepath(directory.entry("file") + junk));
    EXPECT_FALSE(fs::exists(directory.path() / "file"));
}

TEST(FileUtilsPathText, MessagesEndAtTheFirstZeroByteOfThePath) {
    const Filepath path(String("missing\\child\0junk", 18));
    testing::expectThrows<FileException>([&] { FileUtils::createDir(path); }, FILE_ERROR,
                                         "Path incorrect : missing\\child");
    testing::expectThrows<FileException>([&] { FileUtils::deleteFile(path); }, FILE_ERROR,
                                         "Could not delete file : missing\\child");
}

}  // namespace
}  // namespace VelmoraQuavin
