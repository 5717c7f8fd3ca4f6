#include "platform/input_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "support/system.h"
#include "support/temp_directory.h"
#include "support/unreadable_file.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;
using testing::UnreadableFile;

// Spans more than one page.
constexpr std::size_t kSize = 300'000;

class InputFileTest : public ::testing::Test {
protected:
    InputFileTest() { directory_.write("file", std::string(kSize, 'x')); }

    InputFile open() {
        std::string problem;
        return std::move(InputFile::open(directory_.entry("file"), problem).value());
    }
    // Returns why a file cannot be opened.
    static std::string refusal(const std::string& path) {
        std::string problem;
        EXPECT_FALSE(InputFile::open(path, problem).has_value()) << path;
        return problem;
    }
    // Reads into a prefilled buffer that is larger than the file.
    std::string read(InputFile& file) {
        std::string buffer(kSize + 16, '#');
        problem_ = file.read(buffer.data(), got_);
        return buffer;
    }
    void resize(std::size_t size) const {
        std::filesystem::resize_file(directory_.path() / "file", size);
    }

    testing::TempDirectory directory_;
    std::uint64_t got_ = 0;
    std::string problem_ = "not read";
};

TEST_F(InputFileTest, ReadsTheWholeFile) {
    InputFile file = open();
    EXPECT_EQ(file.size(), kSize);
    EXPECT_EQ(read(file), std::string(kSize, 'x') + std::string(16, '#'));
    EXPECT_EQ(got_, kSize);
    EXPECT_EQ(problem_, "");
}

TEST_F(InputFileTest, ReadsPartByPart) {
    directory_.write("file", "abcdefgh");
    InputFile file = open();
    std::string buffer(8, '#');
    EXPECT_EQ(file.read(buffer.data(), 3, got_), "");
    EXPECT_EQ(got_, 3u);
    EXPECT_EQ(file.read(buffer.data() + 3, 0, got_), "");
    EXPECT_EQ(got_, 0u);
    EXPECT_EQ(file.read(buffer.data() + 3, 2, got_), "");
    EXPECT_EQ(got_, 2u);
    EXPECT_EQ(buffer, "abcde###");
    EXPECT_EQ(file.read(buffer.data() + 5, 100, got_), "");
    EXPECT_EQ(got_, 3u);
    EXPECT_EQ(buffer, "abcdefgh");
}

TEST_F(InputFileTest, ReadsWhatIsLeftOfAFileThatHasShrunk) {
    InputFile file = open();
    resize(1000);
    EXPECT_EQ(read(file), std::string(1000, 'x') + std::string(kSize - 1000 + 16, '#'));
    EXPECT_EQ(got_, 1000u);
    EXPECT_EQ(problem_, "");
}

TEST_F(InputFileTest, ReadsNoMoreThanItsSizeIfTheFileHasGrown) {
    InputFile file = open();
    resize(kSize + 10);
    EXPECT_EQ(read(file), std::string(kSize, 'x') + std::string(16, '#'));
    EXPECT_EQ(got_, kSize);
}

TEST_F(InputFileTest, ReportsWhyAFileCannotBeRead) {
    const UnreadableFile unreadable(directory_.path() / "file");
    InputFile file = open();
    EXPECT_EQ(read(file), std::string(kSize + 16, '#'));
    EXPECT_EQ(got_, 0u);
    EXPECT_THAT(problem_, StartsWith("cannot be read: "));
}

TEST_F(InputFileTest, ReportsWhyAMissingFileCannotBeOpened) {
    EXPECT_THAT(refusal(directory_.entry("missing")), StartsWith("cannot be opened: "));
    EXPECT_THAT(refusal(directory_.entry("missing\\file")), StartsWith("cannot be opened: "));
    EXPECT_THAT(refusal(directory_.entry("file\\file")), StartsWith("cannot be opened: "));
    EXPECT_THAT(refusal(""), StartsWith("cannot be opened: "));
}

TEST_F(InputFileTest, RefusesADirectory) {
    EXPECT_EQ(refusal(directory_.text()), "is not a regular file");
    EXPECT_EQ(refusal(directory_.text() + "\\"), "is not a regular file");
}

TEST_F(InputFileTest, RequiresAPathInUtf8) {
    std::string problem;
    EXPECT_THROW(InputFile::open("\xFF", problem), std::range_error);
}

TEST_F(InputFileTest, ClosesTheFileOnDestruction) {
    const std::size_t before = testing::openFiles();
    {
        InputFile file = open();
        InputFile moved = std::move(file);
        EXPECT_EQ(testing::openFiles(), before + 1);
        file = std::move(moved);
        EXPECT_EQ(read(file).front(), 'x');
    }
    EXPECT_EQ(testing::openFiles(), before);
    EXPECT_THAT(refusal(directory_.text()), HasSubstr("regular"));
    EXPECT_EQ(testing::openFiles(), before);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
