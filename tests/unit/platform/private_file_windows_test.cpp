#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
// Behind windows.h, which it needs.
#include <sddl.h>

#include <memory>
#include <string>

#include "private_file_case.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class PrivateFileAccessList : public PrivateFile {
protected:
    // The list as the system's own notation has it.
    void setList(const std::string& name, const wchar_t* list) {
        PSECURITY_DESCRIPTOR made = nullptr;
        ASSERT_NE(::ConvertStringSecurityDescriptorToSecurityDescriptorW(list, SDDL_REVISION_1,
                                                                         &made, nullptr),
                  0);
        const std::unique_ptr<void, decltype(&::LocalFree)> descriptor(made, &::LocalFree);
        ASSERT_NE(::SetFileSecurityW((directory_.path() / name).c_str(), DACL_SECURITY_INFORMATION,
                                     descriptor.get()),
                  0);
    }

    std::wstring listOf(const std::string& name) {
        alignas(void*) unsigned char descriptor[1024];
        DWORD size = 0;
        if (::GetFileSecurityW((directory_.path() / name).c_str(), DACL_SECURITY_INFORMATION,
                               descriptor, sizeof descriptor, &size) == 0) {
            return L"none";
        }
        wchar_t* text = nullptr;
        ::ConvertSecurityDescriptorToStringSecurityDescriptorW(
            descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, nullptr);
        const std::unique_ptr<wchar_t, decltype(&::LocalFree)> memory(text, &::LocalFree);
        return text == nullptr ? L"none" : text;
    }
};

// WD: everyone. SY: the system. BA: its administrators. FA, FR, FW: all, reading, writing.
TEST_F(PrivateFileAccessList, IsRefusedWhereItLetsEverybodyReadIt) {
    EXPECT_THAT(write("key", "secret"), IsEmpty());
    setList("key", L"D:P(A;;FA;;;BA)(A;;FR;;;WD)");
    EXPECT_THAT(read("key"), HasSubstr("can be read by others: "));
    EXPECT_EQ(outcome_, PrivateReading::kOpenToOthers);
    EXPECT_EQ(size_, 0U);
    EXPECT_THAT(read("key", OpenToOthers::kAllowed), IsEmpty());
    EXPECT_EQ(got(), "secret");
}

TEST_F(PrivateFileAccessList, OfANewFileNamesNobodyElse) {
    EXPECT_THAT(write("key", "secret"), IsEmpty());
    EXPECT_THAT(listOf("key"), HasSubstr(L"(A;"));
    EXPECT_THAT(listOf("key"), Not(HasSubstr(L"WD)")));
    EXPECT_THAT(read("key"), IsEmpty());
    EXPECT_EQ(got(), "secret");
}

TEST_F(PrivateFileAccessList, OfAFileForEveryoneIsTheDirectorys) {
    directory_.write("usual", "open");
    EXPECT_THAT(write("result", "open", Readers::kEveryone), IsEmpty());
    EXPECT_EQ(listOf("result"), listOf("usual"));
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
