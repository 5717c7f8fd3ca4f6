#include "platform/windows/access_list.h"

#include <aclapi.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "platform/windows/file_handle.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using Memory = std::vector<unsigned char>;

// The token's user, which points to the identifier behind it: a copy would point here still.
std::unique_ptr<Memory> currentUser() {
    HANDLE opened = nullptr;
    if (::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &opened) == 0) {
        return nullptr;
    }
    const FileHandle token(opened);
    DWORD size = 0;
    ::GetTokenInformation(token.get(), TokenUser, nullptr, 0, &size);
    auto user = std::make_unique<Memory>(size);
    const bool told = ::GetTokenInformation(token.get(), TokenUser, user->data(), size, &size) != 0;
    return told ? std::move(user) : nullptr;
}

PSID identifierIn(const Memory& user) {
    return reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid;
}

// The system and its administrators read everything anyway; the last one stands for the owner.
bool isTrustedGroup(PSID identifier) {
    constexpr std::array kTrusted{WinLocalSystemSid, WinBuiltinAdministratorsSid,
                                  WinCreatorOwnerRightsSid};
    return std::any_of(kTrusted.begin(), kTrusted.end(), [identifier](WELL_KNOWN_SID_TYPE type) {
        return ::IsWellKnownSid(identifier, type) != 0;
    });
}

// The identifier that an entry allows to read; null for an entry of another kind.
PSID readerIn(void* entry) {
    const auto* const header = static_cast<const ACE_HEADER*>(entry);
    auto* const allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
    constexpr ACCESS_MASK kReading = FILE_READ_DATA | GENERIC_READ | GENERIC_ALL;
    const bool applies = header->AceType == ACCESS_ALLOWED_ACE_TYPE &&
                         (header->AceFlags & INHERIT_ONLY_ACE) == 0 &&
                         (allowed->Mask & kReading) != 0;
    return applies ? static_cast<PSID>(&allowed->SidStart) : nullptr;
}

}  // namespace

UsersOwn::UsersOwn() {
    const std::unique_ptr<Memory> user = currentUser();
    if (user == nullptr) {
        return;
    }
    const PSID identifier = identifierIn(*user);
    // The entry's own type ends in the first part of the identifier.
    const DWORD size =
        sizeof(ACL) + sizeof(ACCESS_ALLOWED_ACE) - sizeof(DWORD) + ::GetLengthSid(identifier);
    list_.resize(size);
    auto* const list = reinterpret_cast<ACL*>(list_.data());
    if (::InitializeAcl(list, size, ACL_REVISION) != 0 &&
        ::AddAccessAllowedAce(list, ACL_REVISION, FILE_ALL_ACCESS, identifier) != 0 &&
        ::InitializeSecurityDescriptor(&descriptor_, SECURITY_DESCRIPTOR_REVISION) != 0 &&
        ::SetSecurityDescriptorDacl(&descriptor_, TRUE, list, FALSE) != 0 &&
        ::SetSecurityDescriptorControl(&descriptor_, SE_DACL_PROTECTED, SE_DACL_PROTECTED) != 0) {
        attributes_ = {sizeof attributes_, &descriptor_, FALSE};
    }
}

bool othersMayRead(HANDLE file) {
    const std::unique_ptr<Memory> user = currentUser();
    PSID owner = nullptr;
    ACL* list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (user == nullptr ||
        ::GetSecurityInfo(file, SE_FILE_OBJECT,
                          OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner, nullptr,
                          &list, nullptr, &descriptor) != ERROR_SUCCESS) {
        return true;
    }
    const std::unique_ptr<void, decltype(&::LocalFree)> memory(descriptor, &::LocalFree);
    if (owner == nullptr || list == nullptr) {
        return true;  // no list: everybody may do everything
    }
    for (DWORD i = 0; i < list->AceCount; ++i) {
        void* entry = nullptr;
        if (::GetAce(list, i, &entry) == 0) {
            return true;
        }
        const PSID reader = readerIn(entry);
        if (reader != nullptr && ::EqualSid(reader, owner) == 0 &&
            ::EqualSid(reader, identifierIn(*user)) == 0 && !isTrustedGroup(reader)) {
            return true;
        }
    }
    return false;
}

}  // namespace VelmoraQuavin::internal::platform
