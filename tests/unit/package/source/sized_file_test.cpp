#include "package/source/sized_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/status_matcher.h"
#include "support/temp_directory.h"
#include "support/unreadable_file.h"

namespace VelmoraQuavin::internal {
namespace {

// Longer than any stream's buffer, so that some of the file is unread whatever was read ahead.
constexpr std::size_t kSize = 300'000;

class SizedFileTest : public ::testing::Test {
protected:
    SizedFileTest() { directory_.write("file", std::string(kSize, 'x')); }

    Filepath path(const std::string& name = "file") const {
        return Filepath(directory_.entry(name));
    }
    void resize(std::size_t size) const {
        std::filesystem::resize_file(directory_.path() / "file", size);
    }
    // Reads into a prefilled buffer that is larger than the file, and returns that buffer.
    static std::string read(SizedFile& file) {
        std::string buffer(kSize + 16, '#');
        file.read(buffer.data(), file.size());
        return buffer;
    }

    testing::TempDirectory directory_;
};

TEST_F(SizedFileTest, KnowsTheSizeAndReadsTheContent) {
    SizedFile file = SizedFile::open(path());
    EXPECT_EQ(file.size(), kSize);
    EXPECT_EQ(read(file), std::string(kSize, 'x') + std::string(16, '#'));
}

TEST_F(SizedFileTest, PadsWithZerosIfTheFileHasShrunk) {
    SizedFile file = SizedFile::open(path());
    resize(kSize - 1000);
    EXPECT_EQ(file.size(), kSize);
    EXPECT_EQ(read(file),
              std::string(kSize - 1000, 'x') + std::string(1000, '\0') + std::string(16, '#'));
}

TEST_F(SizedFileTest, ReadsZerosIfTheFileHasBeenEmptied) {
    SizedFile file = SizedFile::open(path());
    resize(0);
    EXPECT_EQ(read(file), std::string(kSize, '\0') + std::string(16, '#'));
}

TEST_F(SizedFileTest, ReadsNoMoreThanItsSizeIfTheFileHasGrown) {
    SizedFile file = SizedFile::open(path());
    std::ofstream(directory_.path() / "file", std::ios::binary | std::ios::app)
        << std::string(5000, 'y');
    EXPECT_EQ(file.size(), kSize);
    EXPECT_EQ(read(file), std::string(kSize, 'x') + std::string(16, '#'));
}

TEST_F(SizedFileTest, ReadsNothingFromAnEmptyFile) {
    resize(0);
    SizedFile file = SizedFile::open(path());
    EXPECT_EQ(file.size(), 0u);
    EXPECT_EQ(read(file), std::string(kSize + 16, '#'));
}

TEST_F(SizedFileTest, ReadsNothingFromAnEmptyFileThatHasGrown) {
    resize(0);
    SizedFile file = SizedFile::open(path());
    resize(10);
    EXPECT_EQ(read(file), std::string(kSize + 16, '#'));
}

TEST_F(SizedFileTest, CannotOpenAMissingFileOrADirectory) {
    std::filesystem::create_directory(directory_.path() / "folder");
    for (const char* name : {"missing", "missing\\file", "folder"}) {
        std::string problem;
        EXPECT_FALSE(SizedFile::tryOpen(path(name), problem).has_value());
        EXPECT_THAT(problem, ::testing::AnyOf(::testing::StartsWith("cannot be opened: "),
                                              "is not a regular file"));
        testing::expectThrows<FileException>([&] { SizedFile::open(path(name)); }, FILE_ERROR,
                                             "File error!");
    }
}

TEST_F(SizedFileTest, MapsTheContentForLongerThanItsOwnLife) {
    const platform::MappedFile mapped = SizedFile::open(path()).map();
    EXPECT_EQ(std::string(mapped.data(), mapped.size()), std::string(kSize, 'x'));
}

TEST_F(SizedFileTest, FailsIfTheSystemCannotReadIt) {
    const testing::UnreadableFile unreadable(directory_.path() / "file");
    SizedFile file = SizedFile::open(path());
    testing::expectThrows<FileException>([&] { read(file); }, FILE_ERROR, "File error!");
}

TEST_F(SizedFileTest, ReturnsZerosAndTheReasonIfTheSystemCannotReadIt) {
    const testing::UnreadableFile unreadable(directory_.path() / "file");
    SizedFile file = SizedFile::open(path());
    std::string buffer(kSize + 16, '#');
    std::string problem;
    EXPECT_FALSE(file.tryRead(buffer.data(), problem));
    EXPECT_EQ(buffer, std::string(kSize, '\0') + std::string(16, '#'));
    EXPECT_THAT(problem, ::testing::StartsWith("cannot be read: "));
}

}  // namespace
}  // namespace VelmoraQuavin::internal
