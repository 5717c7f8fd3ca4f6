// What Windows refuses to do with a file that is mapped.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/input_file.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

// Cuts a file to no bytes.
bool cut(const std::wstring& path) {
    const HANDLE file =
        ::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    const bool done = file != INVALID_HANDLE_VALUE && ::SetEndOfFile(file) != 0;
    ::CloseHandle(file);
    return done;
}

TEST(MappedFileOnWindows, CannotBeCutUntilItIsReleased) {
    const testing::TempDirectory directory;
    directory.write("file", "content");
    const std::wstring path = (directory.path() / "file").wstring();
    {
        std::string problem;
        const MappedFile file =
            InputFile::open(directory.entry("file"), problem).value().map(problem).value();
        EXPECT_FALSE(cut(path));
        EXPECT_EQ(std::string(file.data(), file.size()), "content");
    }
    EXPECT_TRUE(cut(path));
}

TEST(MappedFileOnWindows, AFileThatHasBeenCutSinceItWasOpenedCannotBeMapped) {
    const testing::TempDirectory directory;
    directory.write("file", std::string(100'000, 'x'));
    std::string problem;
    const InputFile file = InputFile::open(directory.entry("file"), problem).value();
    ASSERT_TRUE(cut((directory.path() / "file").wstring()));
    EXPECT_FALSE(file.map(problem).has_value());
    EXPECT_THAT(problem, ::testing::StartsWith("cannot be mapped into memory: "));
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
