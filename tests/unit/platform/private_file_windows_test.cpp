#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h, which it needs.
#include <sddl.h>

#include <memory>
#include <string>
#include <vector>

#include "private_file_case.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class PrivateFileAccessList : public PrivateFile {
protected:
    // Sets the list, which is given in the system's own notation.
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

    // Returns the list in the system's own notation.
    std::wstring listOf(const std::string& name) {
        const Bytes descriptor = descriptorOf(name);
        wchar_t* text = nullptr;
        ::ConvertSecurityDescriptorToStringSecurityDescriptorW(
            const_cast<unsigned char*>(descriptor.data()), SDDL_REVISION_1,
            DACL_SECURITY_INFORMATION, &text, nullptr);
        const std::unique_ptr<wchar_t, decltype(&::LocalFree)> memory(text, &::LocalFree);
        return text == nullptr ? L"none" : text;
    }

    // The identifiers in the list's entries, all of which must allow something.
    std::vector<std::string> namedBy(const std::string& name) {
        Bytes descriptor = descriptorOf(name);
        BOOL present = FALSE;
        BOOL defaulted = FALSE;
        ACL* list = nullptr;
        std::vector<std::string> names;
        if (::GetSecurityDescriptorDacl(descriptor.data(), &present, &list, &defaulted) == 0 ||
            present == FALSE || list == nullptr) {
            return {"everybody"};
        }
        for (DWORD i = 0; i < list->AceCount; ++i) {
            void* entry = nullptr;
            EXPECT_NE(::GetAce(list, i, &entry), 0);
            auto& allowed = *static_cast<ACCESS_ALLOWED_ACE*>(entry);
            EXPECT_EQ(allowed.Header.AceType, ACCESS_ALLOWED_ACE_TYPE);
            names.push_back(textOf(&allowed.SidStart));
        }
        return names;
    }

    static std::string currentUser() {
        HANDLE token = nullptr;
        alignas(TOKEN_USER) unsigned char user[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
        DWORD size = 0;
        EXPECT_NE(::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token), 0);
        EXPECT_NE(::GetTokenInformation(token, TokenUser, user, sizeof user, &size), 0);
        ::CloseHandle(token);
        return textOf(reinterpret_cast<TOKEN_USER*>(user)->User.Sid);
    }

private:
    using Bytes = std::vector<unsigned char>;

    Bytes descriptorOf(const std::string& name) {
        Bytes descriptor(1024);
        DWORD size = 0;
        EXPECT_NE(
            ::GetFileSecurityW((directory_.path() / name).c_str(), DACL_SECURITY_INFORMATION,
                               descriptor.data(), static_cast<DWORD>(descriptor.size()), &size),
            0);
        return descriptor;
    }

    static std::string textOf(PSID identifier) {
        char* text = nullptr;
        EXPECT_NE(::ConvertSidToStringSidA(identifier, &text), 0);
        const std::unique_ptr<char, decltype(&::LocalFree)> memory(text, &::LocalFree);
        return text == nullptr ? "none" : text;
    }
};

// WD: everyone. BA: the administrators. FA, FR, FW: all access, reading, writing.
TEST_F(PrivateFileAccessList, AFileThatEverybodyMayReadIsRefused) {
    EXPECT_THAT(write("key", "secret"), IsEmpty());
    setList("key", L"D:P(A;;FA;;;BA)(A;;FR;;;WD)");
    EXPECT_THAT(read("key"), HasSubstr("can be read by others: "));
    EXPECT_EQ(outcome_, PrivateReading::kOpenToOthers);
    EXPECT_EQ(size_, 0U);
    EXPECT_THAT(read("key", OpenToOthers::kAllowed), IsEmpty());
    EXPECT_EQ(got(), "secret");
}

TEST_F(PrivateFileAccessList, AFileThatEverybodyMayChangeIsRefused) {
    EXPECT_THAT(write("key", "secret"), IsEmpty());
    setList("key", L"D:P(A;;FA;;;BA)(A;;FW;;;WD)");
    EXPECT_THAT(read("key"), HasSubstr("changed by others: "));
    EXPECT_EQ(outcome_, PrivateReading::kOpenToOthers);
    EXPECT_THAT(read("key", OpenToOthers::kAllowed), IsEmpty());
    EXPECT_EQ(got(), "secret");
}

TEST_F(PrivateFileAccessList, ANewFilesListNamesNobodyElse) {
    EXPECT_THAT(write("key", "secret"), IsEmpty());
    // Apart from the system, its administrators and the file's owner.
    EXPECT_THAT(namedBy("key"),
                AllOf(Contains(currentUser()),
                      Each(AnyOf(currentUser(), "S-1-5-18", "S-1-5-32-544", "S-1-3-4"))));
    EXPECT_THAT(read("key"), IsEmpty());
    EXPECT_EQ(got(), "secret");
}

TEST_F(PrivateFileAccessList, AFileReplacedForItsOwnerNamesNobodyElse) {
    directory_.write("existing", "old");
    setList("existing", L"D:P(A;;FA;;;BA)(A;;FA;;;WD)");
    for (const char* name : {"existing", "missing"}) {
        EXPECT_THAT(replace(name, "new", Readers::kOwner), IsEmpty());
        EXPECT_EQ(directory_.read(name), "new");
        EXPECT_THAT(namedBy(name),
                    AllOf(Contains(currentUser()),
                          Each(AnyOf(currentUser(), "S-1-5-18", "S-1-5-32-544", "S-1-3-4"))));
    }
}

TEST_F(PrivateFileAccessList, AFileForEveryoneHasTheDirectorysList) {
    directory_.write("usual", "open");
    EXPECT_THAT(write("result", "open", Readers::kEveryone), IsEmpty());
    EXPECT_EQ(listOf("result"), listOf("usual"));
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
