#include "platform/posix/new_name.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace VelmoraQuavin::internal::platform {
namespace {

constexpr mode_t kClaimMode = 0700;

// Claims the name with an empty directory, which the moved one then replaces.
bool moveDirectory(int directory, const std::string& from, const std::string& to) {
    if (::mkdirat(directory, to.c_str(), kClaimMode) != 0) {
        return false;
    }
    if (::renameat(directory, from.c_str(), directory, to.c_str()) == 0) {
        return true;
    }
    const int error = errno;
    ::unlinkat(directory, to.c_str(), AT_REMOVEDIR);
    errno = error;
    return false;
}

bool moveFile(int directory, const std::string& from, const std::string& to) {
    if (::linkat(directory, from.c_str(), directory, to.c_str(), 0) == 0) {
        ::unlinkat(directory, from.c_str(), 0);
        return true;
    }
    if (errno == EEXIST) {
        return false;
    }
    // No hard links on this file system: checking first is the best that can be done.
    struct stat attributes {};
    if (::fstatat(directory, to.c_str(), &attributes, AT_SYMLINK_NOFOLLOW) == 0) {
        errno = EEXIST;
        return false;
    }
    return ::renameat(directory, from.c_str(), directory, to.c_str()) == 0;
}

}  // namespace

bool renameToNew(int directory, const std::string& from, const std::string& to) {
#if defined(RENAME_NOREPLACE)
    if (::renameat2(directory, from.c_str(), directory, to.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return false;
    }
#endif
    return renameToNewInSteps(directory, from, to);
}

bool renameToNewInSteps(int directory, const std::string& from, const std::string& to) {
    struct stat attributes {};
    if (::fstatat(directory, from.c_str(), &attributes, AT_SYMLINK_NOFOLLOW) != 0) {
        return false;
    }
    return S_ISDIR(attributes.st_mode) ? moveDirectory(directory, from, to)
                                       : moveFile(directory, from, to);
}

}  // namespace VelmoraQuavin::internal::platform
