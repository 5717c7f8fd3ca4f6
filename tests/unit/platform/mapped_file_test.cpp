#include "platform/mapped_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/input_file.h"
#include "support/system.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using ::testing::StartsWith;

// Spans more than one page, and does not fill the last.
constexpr std::size_t kFileSize = 300'001;

class MappedFileTest : public ::testing::Test {
protected:
    MappedFileTest() {
        std::string content(kFileSize, 'x');
        content.front() = '\0';
        content.back() = 'z';
        directory_.write("file", content);
    }

    // Opens and maps a file, which is closed again.
    MappedFile map(const std::string& name = "file") const {
        std::string problem;
        return InputFile::open(directory_.entry(name), problem).value().map(problem).value();
    }
    // Returns why a file cannot be opened to be mapped.
    static std::string refusal(const std::string& path) {
        std::string problem;
        EXPECT_FALSE(InputFile::open(path, problem).has_value()) << path;
        return problem;
    }
    static std::string contentOf(const MappedFile& file) { return {file.data(), file.size()}; }

    testing::TempDirectory directory_;
};

TEST_F(MappedFileTest, HoldsTheFilesContentAlsoAfterTheFileIsClosed) {
    const std::size_t before = testing::openFiles();
    const MappedFile file = map();
    EXPECT_EQ(testing::openFiles(), before);
    EXPECT_EQ(file.size(), kFileSize);
    EXPECT_EQ(contentOf(file), directory_.read("file"));
}

TEST_F(MappedFileTest, BeginsAtAPage) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(map().data()) % 4096, 0u);
}

TEST_F(MappedFileTest, AnEmptyFileIsAnEmptyRange) {
    directory_.write("empty", "");
    const MappedFile file = map("empty");
    EXPECT_EQ(file.size(), 0u);
    EXPECT_EQ(file.data(), nullptr);
}

TEST_F(MappedFileTest, HasTheSizeAtOpeningIfTheFileHasGrown) {
    std::string problem;
    const InputFile file = InputFile::open(directory_.entry("file"), problem).value();
    std::filesystem::resize_file(directory_.path() / "file", kFileSize + 10'000);
    EXPECT_EQ(file.map(problem).value().size(), kFileSize);
}

TEST_F(MappedFileTest, MovesWithItsContent) {
    directory_.write("other", "other");
    MappedFile file = map();
    MappedFile other = map("other");
    other = std::move(file);
    EXPECT_EQ(contentOf(other), directory_.read("file"));
    const MappedFile moved = std::move(other);
    EXPECT_EQ(contentOf(moved), directory_.read("file"));
}

TEST_F(MappedFileTest, MayBeMappedTwice) {
    const MappedFile first = map();
    const MappedFile second = map();
    EXPECT_NE(first.data(), second.data());
    EXPECT_EQ(contentOf(first), contentOf(second));
}

TEST_F(MappedFileTest, WhatCannotBeOpenedIsRefusedAsForReading) {
    EXPECT_THAT(refusal(directory_.entry("missing")), StartsWith("cannot be opened: "));
    EXPECT_THAT(refusal(directory_.entry("file\\file")), StartsWith("cannot be opened: "));
    EXPECT_EQ(refusal(directory_.text()), "is not a regular file");
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
