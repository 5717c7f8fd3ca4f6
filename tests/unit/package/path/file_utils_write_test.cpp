#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "quavin/files.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin {
namespace {

class FileUtilsWriting : public ::testing::Test {
protected:
    FileUtilsWriting() { std::filesystem::create_directory(directory_.path() / "folder"); }

    Filepath path(const std::string& name) const { return Filepath(directory_.entry(name)); }
    bool isThere(const std::string& name) const {
        return std::filesystem::exists(directory_.path() / name);
    }

    testing::TempDirectory directory_;
};

using FileUtilsOpenForWriting = FileUtilsWriting;
using FileUtilsWriteBinary = FileUtilsWriting;
using FileUtilsWriteString = FileUtilsWriting;

TEST_F(FileUtilsOpenForWriting, ReturnsAStreamThatWritesBytesUnchanged) {
    std::ofstream stream = FileUtils::openFileToWriteBinaryData(path("file"));
    ASSERT_TRUE(stream.is_open());
    stream << "a\n\r\n" << '\0' << '\x1A' << "b";
    stream.close();
    EXPECT_EQ(directory_.read("file"), std::string("a\n\r\n\0\x1A"
                                                   "b",
                                                   7));
}

TEST_F(FileUtilsOpenForWriting, EmptiesTheFile) {
    directory_.write("file", "earlier content");
    FileUtils::openFileToWriteBinaryData(path("file")).close();
    EXPECT_EQ(directory_.read("file"), "");
}

TEST_F(FileUtilsOpenForWriting, ReturnsAClosedStreamIfItCannotOpen) {
    EXPECT_FALSE(FileUtils::openFileToWriteBinaryData(path("missing\\file")).is_open());
    EXPECT_FALSE(FileUtils::openFileToWriteBinaryData(path("folder")).is_open());
    EXPECT_FALSE(FileUtils::openFileToWriteBinaryData(Filepath()).is_open());
}

TEST_F(FileUtilsOpenForWriting, LetsOthersReadAndWriteMeanwhile) {
    std::ofstream stream = FileUtils::openFileToWriteBinaryData(path("file"));
    stream << "first" << std::flush;
    uint64 size = 0;
    const std::unique_ptr<char[]> seen = FileUtils::readBinaryFileToBuffer(path("file"), size);
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(std::string(seen.get(), size), "first");
    std::ofstream second = FileUtils::openFileToWriteBinaryData(path("file"));
    EXPECT_TRUE(second.is_open());
}

TEST_F(FileUtilsWriteBinary, WritesBytesUnchanged) {
    const std::string content("a\n\0\r\n\xFF", 6);
    EXPECT_TRUE(FileUtils::writeBinaryDataToFile(content.data(), content.size(), path("file")));
    EXPECT_EQ(directory_.read("file"), content);
}

TEST_F(FileUtilsWriteBinary, ReplacesALongerFile) {
    directory_.write("file", "earlier and longer content");
    EXPECT_TRUE(FileUtils::writeBinaryDataToFile("new", 3, path("file")));
    EXPECT_EQ(directory_.read("file"), "new");
}

TEST_F(FileUtilsWriteBinary, WritesAnEmptyFileForNoBytes) {
    directory_.write("file", "earlier");
    EXPECT_TRUE(FileUtils::writeBinaryDataToFile(nullptr, 0, path("file")));
    EXPECT_TRUE(isThere("file"));
    EXPECT_EQ(directory_.read("file"), "");
}

TEST_F(FileUtilsWriteBinary, AnswersTrueEvenIfTheFileCannotBeOpened) {
    EXPECT_TRUE(FileUtils::writeBinaryDataToFile("new", 3, path("missing\\file")));
    EXPECT_TRUE(FileUtils::writeBinaryDataToFile("new", 3, path("folder")));
    EXPECT_TRUE(FileUtils::writeBinaryDataToFile("new", 3, Filepath()));
    EXPECT_FALSE(isThere("missing"));
    EXPECT_TRUE(std::filesystem::is_empty(directory_.path() / "folder"));
}

TEST_F(FileUtilsWriteString, WritesTheText) {
    EXPECT_TRUE(FileUtils::writeStringToFile("zażółć", path("file")));
    EXPECT_EQ(directory_.read("file"), "zażółć");
}

TEST_F(FileUtilsWriteString, WritesUpToTheFirstZeroByte) {
    EXPECT_TRUE(FileUtils::writeStringToFile(String("seen\0unseen", 11), path("file")));
    EXPECT_EQ(directory_.read("file"), "seen");
}

TEST_F(FileUtilsWriteString, ReplacesALongerFile) {
    directory_.write("file", "earlier and longer content");
    EXPECT_TRUE(FileUtils::writeStringToFile("new", path("file")));
    EXPECT_EQ(directory_.read("file"), "new");
}

TEST_F(FileUtilsWriteString, WritesAnEmptyFileForAnEmptyText) {
    directory_.write("file", "earlier");
    EXPECT_TRUE(FileUtils::writeStringToFile("", path("file")));
    EXPECT_EQ(directory_.read("file"), "");
}

TEST_F(FileUtilsWriteString, AnswersTrueEvenIfTheFileCannotBeOpened) {
    EXPECT_TRUE(FileUtils::writeStringToFile("new", path("missing\\file")));
    EXPECT_TRUE(FileUtils::writeStringToFile("new", path("folder")));
    EXPECT_TRUE(FileUtils::writeStringToFile("new", Filepath()));
    EXPECT_FALSE(isThere("missing"));
}

}  // namespace
}  // namespace VelmoraQuavin
