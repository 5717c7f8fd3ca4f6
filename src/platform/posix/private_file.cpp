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

constexpr mode_t kOwnerMode = 0600;
constexpr mode_t kOwnerDirectoryMode = 0700;
constexpr mode_t kEveryoneMode = 0666;

}  // namespace

PrivateReading readPrivateFile(const String& path, OpenToOthers others, unsigned char* buffer,
                               std::size_t capacity, std::size_t& size, std::string& problem) {
    // Not blocking, so that a pipe without a writer is an error and no wait.
    const FileDescriptor file(
        ::open(nativeUtf8Path(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file) {
        problem = problemText("cannot be opened", errno);
        return PrivateReading::kFailed;
    }
    struct stat attributes {};
    if (::fstat(file.get(), &attributes) != 0 || !S_ISREG(attributes.st_mode)) {
        problem = "is no plain file";
        return PrivateReading::kFailed;
    }
    if (others == OpenToOthers::kRefused && (attributes.st_mode & (S_IRGRP | S_IROTH)) != 0) {
        problem = "can be read by others: take their right with chmod go-r";
        return PrivateReading::kOpenToOthers;
    }
    size = 0;
    while (size < capacity) {
        const ssize_t count = ::read(file.get(), buffer + size, capacity - size);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            problem = problemText("cannot be read", errno);
            return PrivateReading::kFailed;
        }
        if (count == 0) {
            break;
        }
        size += static_cast<std::size_t>(count);
    }
    return PrivateReading::kDone;
}

bool makePrivateDirectory(const String& path) {
    return ::mkdir(nativeUtf8Path(path).c_str(), kOwnerDirectoryMode) == 0;
}

std::string writeNewFile(const String& path, const unsigned char* bytes, std::size_t count,
                         Readers readers) {
    const std::string native = nativeUtf8Path(path);
    const mode_t mode = readers == Readers::kOwner ? kOwnerMode : kEveryoneMode;
    FileDescriptor file(::open(native.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
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
