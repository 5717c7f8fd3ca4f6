#pragma once

#include <unistd.h>

#include <stdexcept>

namespace VelmoraQuavin::testing {

/// Lets a test that runs as root encounter missing permissions: while this object lives, the
/// process runs as nobody. Does nothing for other users.
class DroppedPrivileges {
public:
    DroppedPrivileges() : isRoot_(::geteuid() == 0) {
        if (isRoot_ && ::seteuid(kNobody) != 0) {
            throw std::runtime_error("cannot become another user");
        }
    }
    DroppedPrivileges(const DroppedPrivileges&) = delete;
    DroppedPrivileges& operator=(const DroppedPrivileges&) = delete;
    ~DroppedPrivileges() {
        // Switching back to the real user is always allowed.
        if (isRoot_ && ::seteuid(0) != 0) {
            ::_exit(1);
        }
    }

private:
    static constexpr uid_t kNobody = 65534;

    bool isRoot_;
};

}  // namespace VelmoraQuavin::testing
