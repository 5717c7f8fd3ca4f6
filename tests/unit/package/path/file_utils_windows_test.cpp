// What only Windows has: text mode, devices that appear to exist in every directory, and files that
// others have opened for exclusive use.

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/windows/file_handle.h"
#include "quavin/files.h"
#include "support/status_matcher.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin {
namespace {

namespace fs = std::filesystem;
using internal::platform::FileHandle;
using testing::expectThrows;
using testing::TempDirectory;

TEST(FileUtilsTextMode, LineFeedsBecomeTheSystemsLineEnds) {
    const TempDirectory directory;
    EXPECT_TRUE(FileUtils::writeStringToFile("a\nb\n", Filepath(directory.entry("file"))));
    EXPECT_EQ(directory.read("file"), "a\r\nb\r\n");
}

TEST(FileUtilsTextMode, ACarriageReturnIsKept) {
    const TempDirectory directory;
    EXPECT_TRUE(FileUtils::writeStringToFile("a\r\nb", Filepath(directory.entry("file"))));
    EXPECT_EQ(directory.read("file"), "a\r\r\nb");
}

TEST(FileUtilsTextMode, BinaryDataIsNotTranslated) {
    const TempDirectory directory;
    const Filepath path(directory.entry("file"));
    EXPECT_TRUE(FileUtils::writeBinaryDataToFile("a\nb", 3, path));
    EXPECT_EQ(directory.read("file"), "a\nb");
    {
        std::ofstream stream = FileUtils::openFileToWriteBinaryData(path);
        stream << "c\nd\n";
    }
    EXPECT_EQ(directory.read("file"), "c\nd\n");
    EXPECT_EQ(FileUtils::getFileSize(path), 4u);
}

TEST(FileUtilsDevices, DevicesAcceptWritesButCannotBeRead) {
    const Filepath device("NUL");
    EXPECT_TRUE(FileUtils::writeBinaryDataToFile("content", 7, device));
    EXPECT_TRUE(FileUtils::writeStringToFile("content", device));
    uint64 size = 4711;
    EXPECT_EQ(FileUtils::readBinaryFileToBuffer(device, size), nullptr);
    EXPECT_EQ(size, 4711u);
    expectThrows<FileException>([&] { FileUtils::getFileSize(device); }, FILE_ERROR, "File error!");
}

// A file that is open elsewhere and not shared.
class FileUtilsNotShared : public ::testing::Test {
protected:
    FileUtilsNotShared() {
        directory_.write("file", "content");
        file_ = FileHandle(::CreateFileW((directory_.path() / "file").c_str(), GENERIC_READ, 0,
                                         nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    }

    TempDirectory directory_;
    FileHandle file_;
    const Filepath path_{directory_.entry("file")};
};

TEST_F(FileUtilsNotShared, TheFileExists) {
    ASSERT_TRUE(file_);
    EXPECT_TRUE(FileUtils::pathExists(path_));
}

TEST_F(FileUtilsNotShared, TheFileCannotBeOpenedForReading) {
    ASSERT_TRUE(file_);
    uint64 size = 4711;
    EXPECT_EQ(FileUtils::readBinaryFileToBuffer(path_, size), nullptr);
    EXPECT_EQ(size, 4711u);
    expectThrows<FileException>([&] { FileUtils::getFileSize(path_); }, FILE_ERROR, "File error!");
}

TEST_F(FileUtilsNotShared, WritingFailsButAnswersTrue) {
    ASSERT_TRUE(file_);
    EXPECT_FALSE(FileUtils::openFileToWriteBinaryData(path_).is_open());
    EXPECT_TRUE(FileUtils::writeBinaryDataToFile("new", 3, path_));
    EXPECT_TRUE(FileUtils::writeStringToFile("new", path_));
    file_ = FileHandle();
    EXPECT_EQ(directory_.read("file"), "content");
}

TEST_F(FileUtilsNotShared, TheFileCannotBeDeleted) {
    ASSERT_TRUE(file_);
    expectThrows<FileException>([&] { FileUtils::deleteFile(path_); }, FILE_ERROR,
                                "Could not delete file : " + directory_.entry("file"));
    EXPECT_TRUE(fs::exists(directory_.path() / "file"));
}

}  // namespace
}  // namespace VelmoraQuavin
