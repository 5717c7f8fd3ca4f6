#pragma once

#include <windows.h>

#include <vector>

namespace VelmoraQuavin::internal::platform {

/// The access list for a new file that only this process's user may access, whatever the directory
/// would pass on.
class OwnerOnlyAccess {
public:
    OwnerOnlyAccess();
    OwnerOnlyAccess(const OwnerOnlyAccess&) = delete;
    OwnerOnlyAccess& operator=(const OwnerOnlyAccess&) = delete;
    ~OwnerOnlyAccess() = default;

    /// Whether the list could be built; if not, GetLastError() tells why.
    explicit operator bool() const { return attributes_.lpSecurityDescriptor != nullptr; }
    SECURITY_ATTRIBUTES* get() { return &attributes_; }

private:
    std::vector<unsigned char> list_;
    SECURITY_DESCRIPTOR descriptor_{};
    SECURITY_ATTRIBUTES attributes_{};
};

enum class Access { kRead, kChange };

/// Whether an open file's access list grants this access to anyone but its owner, this process's
/// user, the system and its administrators. Also true if that cannot be determined.
bool othersMay(Access access, HANDLE file);

/// As above, for an access list in memory; without one, everyone may do everything.
/// @param owner the file's owner.
/// @param user this process's user.
bool othersMay(Access access, ACL* list, PSID owner, PSID user);

}  // namespace VelmoraQuavin::internal::platform
