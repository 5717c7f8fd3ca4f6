// The two interfaces of Windows: the narrow one takes bytes in the system's code page, the wide one
// takes UTF-8 converted to UTF-16.

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>

#include "platform/file_system.h"
#include "platform/windows/file_handle.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

namespace fs = std::filesystem;
using testing::TempDirectory;

const std::string kOutsideAscii = "gr\xC3\xB6\xC3\x9F\x65";

// Bytes in the system's code page, converted to UTF-16 as the system does it.
std::wstring decoded(const std::string& bytes) {
    std::wstring text(bytes.size(), L'\0');
    const int count = ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()),
                                            text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(count));
    return text;
}

TEST(CreateDirectory, ReadsNamesInTheSystemsCodePage) {
    const TempDirectory directory;
    EXPECT_EQ(createDirectory(directory.entry(kOutsideAscii)), DirectoryCreation::kCreated);
    EXPECT_TRUE(fs::is_directory(directory.path() / decoded(kOutsideAscii)));
}

TEST(RemoveFile, ReadsNamesInTheSystemsCodePage) {
    const TempDirectory directory;
    const fs::path name = decoded(kOutsideAscii);
    directory.write(name.u8string(), "content");
    EXPECT_TRUE(removeFile(directory.entry(kOutsideAscii)));
    EXPECT_FALSE(fs::exists(directory.path() / name));
}

TEST(RemoveFile, LeavesAFileThatIsOpenElsewhere) {
    const TempDirectory directory;
    directory.write("file", "content");
    const FileHandle file(::CreateFileW((directory.path() / "file").c_str(), GENERIC_READ,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(file);
    EXPECT_FALSE(removeFile(directory.entry("file")));
    EXPECT_EQ(directory.read("file"), "content");
}

TEST(IsMissing, ReadsNamesInUtf8) {
    const TempDirectory directory;
    directory.write(kOutsideAscii, "content");
    EXPECT_FALSE(isMissing(directory.entry(kOutsideAscii)));
    EXPECT_TRUE(isMissing(directory.entry(kOutsideAscii + "r")));
}

TEST(IsMissing, LooksInTheRootOfADriveForItsEntries) {
    EXPECT_FALSE(isMissing("C:\\"));
    EXPECT_FALSE(isMissing("C:/"));
    EXPECT_TRUE(isMissing("C:\\no-such-entry-here"));
    EXPECT_TRUE(isMissing("C:\\no-such-entry-here\\"));
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
