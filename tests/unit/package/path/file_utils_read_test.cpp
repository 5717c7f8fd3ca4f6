#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "quavin/files.h"
#include "support/status_matcher.h"
#include "support/temp_directory.h"
#include "support/unreadable_file.h"

namespace VelmoraQuavin {
namespace {

constexpr uint64 kUntouched = 4711;

// Every byte value, including line ends and zero bytes; several stream buffers long.
std::string allBytes() {
    std::string bytes;
    for (int round = 0; round < 400; ++round) {
        for (int value = 0; value < 256; ++value) {
            bytes.push_back(static_cast<char>((value * 7 + round) % 256));
        }
    }
    return bytes;
}

class FileUtilsReading : public ::testing::Test {
protected:
    FileUtilsReading() { std::filesystem::create_directory(directory_.path() / "folder"); }

    Filepath path(const std::string& name) const { return Filepath(directory_.entry(name)); }

    testing::TempDirectory directory_;
};

using FileUtilsGetFileSize = FileUtilsReading;
using FileUtilsReadToBuffer = FileUtilsReading;
using FileUtilsReadToAllocated = FileUtilsReading;

TEST_F(FileUtilsGetFileSize, CountsBytes) {
    directory_.write("file", allBytes());
    EXPECT_EQ(FileUtils::getFileSize(path("file")), 400u * 256u);
}

TEST_F(FileUtilsGetFileSize, IsZeroForAnEmptyFile) {
    directory_.write("file", "");
    EXPECT_EQ(FileUtils::getFileSize(path("file")), 0u);
}

TEST_F(FileUtilsGetFileSize, CountsBeyondFourGibibytes) {
    constexpr std::uintmax_t size = (std::uintmax_t{5} << 30) + 3;
    directory_.write("file", "");
    std::filesystem::resize_file(directory_.path() / "file", size);  // sparse
    EXPECT_EQ(FileUtils::getFileSize(path("file")), size);
}

TEST_F(FileUtilsGetFileSize, ThrowsForAMissingFile) {
    testing::expectThrows<FileException>([&] { FileUtils::getFileSize(path("missing")); },
                                         FILE_ERROR, "File error!");
}

TEST_F(FileUtilsGetFileSize, ThrowsForADirectory) {
    testing::expectThrows<FileException>([&] { FileUtils::getFileSize(path("folder")); },
                                         FILE_ERROR, "File error!");
}

TEST_F(FileUtilsReadToBuffer, ReturnsTheBytesAndTheirCount) {
    const std::string content = allBytes();
    directory_.write("file", content);
    uint64 size = kUntouched;
    const std::unique_ptr<char[]> buffer = FileUtils::readBinaryFileToBuffer(path("file"), size);
    ASSERT_NE(buffer, nullptr);
    ASSERT_EQ(size, content.size());
    EXPECT_EQ(std::string(buffer.get(), size), content);
}

TEST_F(FileUtilsReadToBuffer, ReturnsAnEmptyArrayForAnEmptyFile) {
    directory_.write("file", "");
    uint64 size = kUntouched;
    EXPECT_NE(FileUtils::readBinaryFileToBuffer(path("file"), size), nullptr);
    EXPECT_EQ(size, 0u);
}

TEST_F(FileUtilsReadToBuffer, ReturnsNullForAMissingFileAndLeavesTheSize) {
    uint64 size = kUntouched;
    EXPECT_EQ(FileUtils::readBinaryFileToBuffer(path("missing"), size), nullptr);
    EXPECT_EQ(FileUtils::readBinaryFileToBuffer(path("missing\\child"), size), nullptr);
    EXPECT_EQ(FileUtils::readBinaryFileToBuffer(Filepath(), size), nullptr);
    EXPECT_EQ(size, kUntouched);
}

TEST_F(FileUtilsReadToBuffer, ReturnsNullForADirectoryAndLeavesTheSize) {
    uint64 size = kUntouched;
    EXPECT_EQ(FileUtils::readBinaryFileToBuffer(path("folder"), size), nullptr);
    EXPECT_EQ(FileUtils::readBinaryFileToBuffer(path("folder\\"), size), nullptr);
    EXPECT_EQ(size, kUntouched);
}

TEST_F(FileUtilsReadToAllocated, WritesExactlyTheBytesOfTheFile) {
    const std::string content = allBytes();
    directory_.write("file", content);
    std::string buffer(content.size() + 16, '#');
    uint64 size = kUntouched;
    FileUtils::readBinaryFileToAllocated(path("file"), size, buffer.data());
    EXPECT_EQ(size, content.size());
    EXPECT_EQ(buffer, content + std::string(16, '#'));
}

TEST_F(FileUtilsReadToAllocated, WritesNothingForAnEmptyFile) {
    directory_.write("file", "");
    std::string buffer(16, '#');
    uint64 size = kUntouched;
    FileUtils::readBinaryFileToAllocated(path("file"), size, buffer.data());
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(buffer, std::string(16, '#'));
}

TEST_F(FileUtilsReadToAllocated, ThrowsForAMissingFileAndLeavesSizeAndBuffer) {
    std::string buffer(16, '#');
    uint64 size = kUntouched;
    testing::expectThrows<FileException>(
        [&] { FileUtils::readBinaryFileToAllocated(path("missing"), size, buffer.data()); },
        FILE_ERROR, "File error!");
    EXPECT_EQ(size, kUntouched);
    EXPECT_EQ(buffer, std::string(16, '#'));
}

TEST_F(FileUtilsReadToAllocated, ThrowsForADirectoryAndLeavesSizeAndBuffer) {
    std::string buffer(16, '#');
    uint64 size = kUntouched;
    testing::expectThrows<FileException>(
        [&] { FileUtils::readBinaryFileToAllocated(path("folder"), size, buffer.data()); },
        FILE_ERROR, "File error!");
    EXPECT_EQ(size, kUntouched);
    EXPECT_EQ(buffer, std::string(16, '#'));
}

TEST_F(FileUtilsReadToBuffer, ReturnsZerosIfTheSystemCannotReadTheFile) {
    directory_.write("file", allBytes());
    const testing::UnreadableFile unreadable(directory_.path() / "file");
    uint64 size = kUntouched;
    const std::unique_ptr<char[]> buffer = FileUtils::readBinaryFileToBuffer(path("file"), size);
    ASSERT_NE(buffer, nullptr);
    ASSERT_EQ(size, 400u * 256u);
    EXPECT_EQ(std::string(buffer.get(), size), std::string(size, '\0'));
}

}  // namespace
}  // namespace VelmoraQuavin
