// What others may do with a file while it is open.

#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <string>

#include "platform/file_streams.h"
#include "platform/input_file.h"
#include "platform/windows/file_handle.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using testing::TempDirectory;

// The streams of the C runtime let others do anything but delete the file.
class FileSharing : public ::testing::Test {
protected:
    FileSharing() { directory_.write("file", "content"); }

    // Whether the file can be opened with this access by a caller that shares everything itself.
    bool mayOpen(DWORD access) const {
        constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
        const FileHandle file(::CreateFileW((directory_.path() / "file").c_str(), access, kShared,
                                            nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                                            nullptr));
        return static_cast<bool>(file);
    }
    void expectSharedForReadingAndWriting() const {
        EXPECT_TRUE(mayOpen(GENERIC_READ));
        EXPECT_TRUE(mayOpen(GENERIC_WRITE));
        EXPECT_FALSE(mayOpen(DELETE));
        EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
    }
    String path() const { return directory_.entry("file"); }

    TempDirectory directory_;
};

TEST_F(FileSharing, AClosedFileMayBeOpenedForAnything) {
    EXPECT_TRUE(mayOpen(GENERIC_READ | GENERIC_WRITE | DELETE));
}

TEST_F(FileSharing, AFileThatIsReadIsSharedForReadingAndWriting) {
    std::string problem;
    const auto file = InputFile::open(path(), problem);
    ASSERT_TRUE(file.has_value()) << problem;
    expectSharedForReadingAndWriting();
}

TEST_F(FileSharing, AFileThatIsWrittenIsSharedForReadingAndWriting) {
    const std::ofstream stream = openFileForWriting(path(), std::ios::binary);
    ASSERT_TRUE(stream.is_open());
    expectSharedForReadingAndWriting();
}

TEST_F(FileSharing, AFileThatIsReadAndWrittenIsSharedForReadingAndWriting) {
    const std::fstream stream = openFile(path(), std::ios::in | std::ios::out);
    ASSERT_TRUE(stream.is_open());
    expectSharedForReadingAndWriting();
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
