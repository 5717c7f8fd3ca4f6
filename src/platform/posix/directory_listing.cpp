#include "platform/directory_listing.h"

#include <dirent.h>

#include <cerrno>
#include <memory>

#include "platform/posix/native_path.h"
#include "platform/posix/whole_write.h"

namespace VelmoraQuavin::internal::platform {
namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const noexcept { ::closedir(directory); }
};

}  // namespace

std::string listDirectory(const String& path, std::vector<std::string>& names) {
    const std::unique_ptr<DIR, CloseDirectory> directory(::opendir(nativeUtf8Path(path).c_str()));
    if (directory == nullptr) {
        return problemText("cannot be listed", errno);
    }
    errno = 0;
    while (const struct dirent* const entry = ::readdir(directory.get())) {
        const std::string name = static_cast<const char*>(entry->d_name);
        if (name != "." && name != "..") {
            names.push_back(name);
        }
        errno = 0;
    }
    return errno == 0 ? "" : problemText("cannot be listed", errno);
}

}  // namespace VelmoraQuavin::internal::platform
