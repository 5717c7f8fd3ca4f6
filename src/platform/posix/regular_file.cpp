#include "platform/posix/regular_file.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

#include "platform/posix/native_path.h"
#include "platform/posix/whole_write.h"

namespace VelmoraQuavin::internal::platform {

std::optional<RegularFile> openRegularFile(const String& path, std::string& problem) {
    // Non-blocking, so that a pipe without a writer is an error instead of a hang.
    FileDescriptor descriptor(
        ::open(nativeUtf8Path(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!descriptor) {
        problem = problemText("cannot be opened", errno);
        return std::nullopt;
    }
    struct stat attributes {};
    if (::fstat(descriptor.get(), &attributes) != 0 || !S_ISREG(attributes.st_mode)) {
        problem = "is not a regular file";
        return std::nullopt;
    }
    return RegularFile{std::move(descriptor), attributes};
}

}  // namespace VelmoraQuavin::internal::platform
