#include "platform/private_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/file_descriptor.h"
#include "platform/posix/native_path.h"
#include "platform/posix/whole_write.h"

namespace VelmoraQuavin::internal::platform {
namespace {

constexpr mode_t kOwnerOnly = 0600;

}  // namespace

std::string readPrivateFile(const String& path, OpenToOthers others, unsigned char* buffer,
                            std::size_t capacity, std::size_t& size) {
    // Not blocking, so that a pipe without a writer is an error and no wait.
    const FileDescriptor file(
        ::open(nativeUtf8Path(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file) {
        return problemText("cannot be opened", errno);
    }
    struct stat attributes {};
    if (::fstat(file.get(), &attributes) != 0 || !S_ISREG(attributes.st_mode)) {
        return "is no plain file";
    }
    if (others == OpenToOthers::kRefused && (attributes.st_mode & (S_IRGRP | S_IROTH)) != 0) {
        return "can be read by others";
    }
    size = 0;
    while (size < capacity) {
        const ssize_t count = ::read(file.get(), buffer + size, capacity - size);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return problemText("cannot be read", errno);
        }
        if (count == 0) {
            break;
        }
        size += static_cast<std::size_t>(count);
    }
    return "";
}

std::string writePrivateFile(const String& path, const unsigned char* bytes, std::size_t count) {
    const std::string native = nativeUtf8Path(path);
    FileDescriptor file(
        ::open(native.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kOwnerOnly));
    if (!file) {
        return problemText("cannot be made", errno);
    }
    if (!writeWhole(file.get(), bytes, count) || !file.close()) {
        const int error = errno;
        ::unlink(native.c_str());
        return problemText("cannot be written", error);
    }
    return "";
}

}  // namespace VelmoraQuavin::internal::platform
