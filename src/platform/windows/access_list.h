#pragma once

#include <windows.h>

#include <vector>

namespace VelmoraQuavin::internal::platform {

/// The access list of a new file that this process's user alone may use, whatever its directory
/// hands down.
class OwnerOnlyAccess {
public:
    OwnerOnlyAccess();
    OwnerOnlyAccess(const OwnerOnlyAccess&) = delete;
    OwnerOnlyAccess& operator=(const OwnerOnlyAccess&) = delete;
    ~OwnerOnlyAccess() = default;

    /// Whether the system has told who the user is; GetLastError() tells why not.
    explicit operator bool() const { return attributes_.lpSecurityDescriptor != nullptr; }
    SECURITY_ATTRIBUTES* get() { return &attributes_; }

private:
    std::vector<unsigned char> list_;
    SECURITY_DESCRIPTOR descriptor_{};
    SECURITY_ATTRIBUTES attributes_{};
};

enum class Access { kRead, kChange };

/// Whether an open file's access list allows something to anybody but its owner, this process's
/// user, the system and its administrators. Also true where that cannot be told.
bool othersMay(Access access, HANDLE file);

/// The same for an access list in memory; where there is none, everybody may do everything.
/// @param owner the file's.
/// @param user this process's.
bool othersMay(Access access, ACL* list, PSID owner, PSID user);

}  // namespace VelmoraQuavin::internal::platform
