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

// The token's user, which points to the identifier stored after it: a copy would still point here.
std::unique_ptr<Memory> currentUser() {
    HANDLE opened = nullptr;
    if (::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &opened) == 0) {
        return nullptr;
    }
    const FileHandle token(opened);
    DWORD size = 0;
    ::GetTokenInformation(token.get(), TokenUser, nullptr, 0, &size);
    auto user = std::make_unique<Memory>(size);
    const bool succeeded =
        ::GetTokenInformation(token.get(), TokenUser, user->data(), size, &size) != 0;
    return succeeded ? std::move(user) : nullptr;
}

PSID identifierIn(const Memory& user) {
    return reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid;
}

// The system and its administrators can read everything anyway; the last one stands for the owner.
bool isTrustedGroup(PSID identifier) {
    constexpr std::array kTrusted{WinLocalSystemSid, WinBuiltinAdministratorsSid,
                                  WinCreatorOwnerRightsSid};
    return std::any_of(kTrusted.begin(), kTrusted.end(), [identifier](WELL_KNOWN_SID_TYPE type) {
        return ::IsWellKnownSid(identifier, type) != 0;
    });
}

bool denies(BYTE type) {
    return type == ACCESS_DENIED_ACE_TYPE || type == ACCESS_DENIED_OBJECT_ACE_TYPE ||
           type == ACCESS_DENIED_CALLBACK_ACE_TYPE ||
           type == ACCESS_DENIED_CALLBACK_OBJECT_ACE_TYPE;
}

ACCESS_MASK maskOf(Access access) {
    constexpr ACCESS_MASK kReading = FILE_READ_DATA | GENERIC_READ | GENERIC_ALL;
    // Anyone who may change the list or the owner can grant themselves the rest.
    constexpr ACCESS_MASK kChanging =
        FILE_WRITE_DATA | FILE_APPEND_DATA | WRITE_DAC | WRITE_OWNER | GENERIC_WRITE | GENERIC_ALL;
    return access == Access::kRead ? kReading : kChanging;
}

// Whether an entry grants some of this access. All entry types have their mask in the same place.
bool allows(Access access, const ACCESS_ALLOWED_ACE& entry) {
    return !denies(entry.Header.AceType) && (entry.Header.AceFlags & INHERIT_ONLY_ACE) == 0 &&
           (entry.Mask & maskOf(access)) != 0;
}

// Null for entry types with further fields between mask and identifier. The condition of a callback
// entry comes after the identifier, and is assumed to be met.
PSID userIn(ACCESS_ALLOWED_ACE& entry) {
    const BYTE type = entry.Header.AceType;
    const bool isNext = type == ACCESS_ALLOWED_ACE_TYPE || type == ACCESS_ALLOWED_CALLBACK_ACE_TYPE;
    return isNext ? static_cast<PSID>(&entry.SidStart) : nullptr;
}

}  // namespace

OwnerOnlyAccess::OwnerOnlyAccess() {
    const std::unique_ptr<Memory> user = currentUser();
    if (user == nullptr) {
        return;
    }
    const PSID identifier = identifierIn(*user);
    // The entry's structure already includes the first part of the identifier.
    const auto size = static_cast<DWORD>(sizeof(ACL) + sizeof(ACCESS_ALLOWED_ACE) - sizeof(DWORD) +
                                         ::GetLengthSid(identifier));
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

bool othersMay(Access access, HANDLE file) {
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
    return othersMay(access, list, owner, identifierIn(*user));
}

bool othersMay(Access access, ACL* list, PSID owner, PSID user) {
    if (owner == nullptr || list == nullptr) {
        return true;  // no list: everyone may do everything
    }
    if (::IsValidAcl(list) == 0) {
        return true;  // its entries may extend past its end
    }
    for (DWORD i = 0; i < list->AceCount; ++i) {
        void* got = nullptr;
        if (::GetAce(list, i, &got) == 0) {
            return true;
        }
        auto& entry = *static_cast<ACCESS_ALLOWED_ACE*>(got);
        if (!allows(access, entry)) {
            continue;
        }
        const PSID other = userIn(entry);
        if (other == nullptr || (::EqualSid(other, owner) == 0 && ::EqualSid(other, user) == 0 &&
                                 !isTrustedGroup(other))) {
            return true;
        }
    }
    return false;
}

}  // namespace VelmoraQuavin::internal::platform
