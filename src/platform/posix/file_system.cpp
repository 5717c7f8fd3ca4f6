#include "platform/file_system.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "platform/posix/native_path.h"

namespace VelmoraQuavin::internal::platform {
namespace {

constexpr mode_t kDirectoryMode = 0777;  // before the process's umask

// The directory that would contain the entry. Ignores trailing separators, which archives put after
// the names of directories.
std::string parentOf(const std::string& path) {
    const std::size_t nameEnd = path.find_last_not_of('/');
    if (nameEnd == std::string::npos) {
        return path;
    }
    const std::size_t separator = path.rfind('/', nameEnd);
    if (separator == std::string::npos) {
        return ".";
    }
    return separator == 0 ? "/" : path.substr(0, separator);
}

}  // namespace

DirectoryCreation createDirectory(const String& path) {
    if (::mkdir(nativePath(path).c_str(), kDirectoryMode) == 0) {
        return DirectoryCreation::kCreated;
    }
    return errno == ENOENT || errno == ENOTDIR ? DirectoryCreation::kParentMissing
                                               : DirectoryCreation::kOtherFailure;
}

bool removeFile(const String& path) {
    return ::unlink(nativePath(path).c_str()) == 0;
}

bool isMissing(const String& path) {
    const std::string native = nativeUtf8Path(path);
    // A link exists even if its target does not.
    struct stat attributes {};
    if (::lstat(native.c_str(), &attributes) == 0 || errno != ENOENT) {
        return false;
    }
    return isDirectory(parentOf(native));
}

std::filesystem::path standardPath(const String& path) {
    return nativeUtf8Path(path);
}

}  // namespace VelmoraQuavin::internal::platform
