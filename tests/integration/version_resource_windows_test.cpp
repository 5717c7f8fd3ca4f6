// What the system reports about the library's file, which installers compare.

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "quavin/version.h"

namespace VelmoraQuavin {
namespace {

class VersionResource : public ::testing::Test {
protected:
    VersionResource() {
        const char* const file = "quavin_on_device_sdk.dll";
        content_.resize(::GetFileVersionInfoSizeA(file, nullptr));
        if (content_.empty() || ::GetFileVersionInfoA(file, 0, static_cast<DWORD>(content_.size()),
                                                      content_.data()) == 0) {
            ADD_FAILURE() << file << " has no version resource";
        }
    }

    // A value of the block for English and UTF-16.
    std::string text(const std::string& name) {
        void* value = nullptr;
        UINT size = 0;
        return ::VerQueryValueA(content_.data(), ("\\StringFileInfo\\040904B0\\" + name).c_str(),
                                &value, &size) != 0
                   ? static_cast<const char*>(value)
                   : "";
    }

    std::vector<char> content_;
};

TEST_F(VersionResource, HasTheLibrarysVersion) {
    EXPECT_EQ(text("FileVersion"), getVersion());
    EXPECT_EQ(text("ProductVersion"), getVersion());
}

TEST_F(VersionResource, HasTheVersionAsNumbersToo) {
    void* value = nullptr;
    UINT size = 0;
    ASSERT_NE(::VerQueryValueA(content_.data(), "\\", &value, &size), 0);
    const auto* const fixed = static_cast<const VS_FIXEDFILEINFO*>(value);
    const std::string numbers = std::to_string(HIWORD(fixed->dwFileVersionMS)) + "." +
                                std::to_string(LOWORD(fixed->dwFileVersionMS)) + "." +
                                std::to_string(HIWORD(fixed->dwFileVersionLS));
    EXPECT_EQ(numbers, getVersion());
    EXPECT_EQ(fixed->dwProductVersionMS, fixed->dwFileVersionMS);
    EXPECT_EQ(fixed->dwProductVersionLS, fixed->dwFileVersionLS);
    EXPECT_EQ(fixed->dwFileType, static_cast<DWORD>(VFT_DLL));
}

TEST_F(VersionResource, NamesTheLibrary) {
    EXPECT_EQ(text("ProductName"), "quavin_on_device_sdk");
    EXPECT_EQ(text("OriginalFilename"), "quavin_on_device_sdk.dll");
    EXPECT_NE(text("FileDescription"), "");
}

}  // namespace
}  // namespace VelmoraQuavin
