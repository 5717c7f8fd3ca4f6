// Native paths on Windows; POSIX paths have their own test.

#include "platform/windows/wide_path.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace VelmoraQuavin::internal::platform {
namespace {

TEST(WidePath, KeepsSeparatorsOfBothKinds) {
    EXPECT_EQ(widePath("a\\b\\\\c\\"), L"a\\b\\\\c\\");
    EXPECT_EQ(widePath("C:/a\\b"), L"C:/a\\b");
    EXPECT_EQ(widePath(""), L"");
}

TEST(WidePath, IsUtf16) {
    // Characters of two, three and four bytes; the last becomes a surrogate pair.
    EXPECT_EQ(widePath("\xC3\xB6\\\xE5\x90\x8D\\\xF0\x9F\x98\x80"),
              L"\x00F6\\\x540D\\\xD83D\xDE00");
}

TEST(WidePath, ThrowsBadConversionForAnythingButUtf8) {
    for (const char* path : {"a\\\xFF", "\xC3", "\xC0\xAF", "\xED\xA0\x80"}) {
        try {
            static_cast<void>(widePath(path));
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::range_error& error) {
            EXPECT_STREQ(error.what(), "bad conversion");
        }
    }
}

TEST(WidePath, EndsAtTheFirstZeroByte) {
    EXPECT_EQ(widePath(String("a\\b\0\xFF", 5)), L"a\\b");
}

TEST(NarrowPath, KeepsAnyBytesUnchanged) {
    EXPECT_EQ(narrowPath("a/b\\c\\"), "a/b\\c\\");
    EXPECT_EQ(narrowPath("\xFF\\\x80"), "\xFF\\\x80");
    EXPECT_EQ(narrowPath(""), "");
}

TEST(NarrowPath, EndsAtTheFirstZeroByte) {
    EXPECT_EQ(narrowPath(String("a\\b\0\xFF", 5)), "a\\b");
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
