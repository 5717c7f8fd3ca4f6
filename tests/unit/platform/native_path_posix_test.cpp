// Native paths on POSIX systems; Windows paths have their own test.

#include "platform/posix/native_path.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

TEST(NativePath, ReplacesBackslashesWithSlashes) {
    EXPECT_EQ(nativePath("a\\b\\\\c\\"), "a/b//c/");
    EXPECT_EQ(nativePath("a/b\\c"), "a/b/c");
    EXPECT_EQ(nativePath(""), "");
}

TEST(NativePath, EndsAtTheFirstZeroByte) {
    EXPECT_EQ(nativePath(String("a\\b\0c", 5)), "a/b");
    EXPECT_EQ(nativeUtf8Path(String("a\\b\0\xFF", 5)), "a/b");
}

TEST(NativePath, AcceptsAnyBytes) {
    EXPECT_EQ(nativePath("\xFF\\\x80"), "\xFF/\x80");
}

TEST(NativeUtf8Path, AcceptsUtf8) {
    EXPECT_EQ(nativeUtf8Path("名前\\😀"), "名前/😀");
}

TEST(NativeUtf8Path, ThrowsBadConversionForAnythingElse) {
    try {
        static_cast<void>(nativeUtf8Path("a\\\xFF"));
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::range_error& error) {
        EXPECT_STREQ(error.what(), "bad conversion");
    }
}

TEST(IsDirectory, FollowsLinks) {
    const testing::TempDirectory directory;
    const std::string base = directory.text();
    directory.write("folder/file", "content");
    std::filesystem::create_directory_symlink(base + "/folder", base + "/folder_link");
    std::filesystem::create_symlink(base + "/folder/file", base + "/file_link");
    EXPECT_TRUE(isDirectory(base));
    EXPECT_TRUE(isDirectory(base + "/folder"));
    EXPECT_TRUE(isDirectory(base + "/folder_link"));
    EXPECT_FALSE(isDirectory(base + "/folder/file"));
    EXPECT_FALSE(isDirectory(base + "/file_link"));
    EXPECT_FALSE(isDirectory(base + "/missing"));
    EXPECT_FALSE(isDirectory(""));
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
