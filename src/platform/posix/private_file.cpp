#include "platform/private_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>

#include "platform/posix/file_descriptor.h"
#include "platform/posix/native_path.h"
#include "platform/posix/new_name.h"
#include "platform/posix/pending_file.h"
#include "platform/posix/regular_file.h"
#include "platform/posix/whole_write.h"

namespace VelmoraQuavin::internal::platform {
namespace {

constexpr mode_t kOwnerMode = 0600;
constexpr mode_t kOwnerDirectoryMode = 0700;
constexpr mode_t kEveryoneMode = 0666;
constexpr mode_t kPermissions = 0777;

// An open directory and a name in it.
struct Place {
    explicit Place(const std::string& path) {
        const std::size_t separator = path.rfind('/');
        const bool hasDirectory = separator != std::string::npos;
        name = hasDirectory ? path.substr(separator + 1) : path;
        const std::string parent =
            hasDirectory ? path.substr(0, std::max<std::size_t>(separator, 1)) : ".";
        directory = FileDescriptor(::open(parent.c_str(), kPassThrough));
    }

    FileDescriptor directory;
    std::string name;
};

mode_t modeFor(Readers readers) {
    return readers == Readers::kOwner ? kOwnerMode : kEveryoneMode;
}

}  // namespace

PrivateReading readPrivateFile(const String& path, OpenToOthers others, unsigned char* buffer,
                               std::size_t capacity, std::size_t& size, std::string& problem) {
    const std::optional<RegularFile> file = openRegularFile(path, problem);
    if (!file) {
        return PrivateReading::kFailed;
    }
    const mode_t mode = file->attributes.st_mode;
    const bool readable = (mode & (S_IRGRP | S_IROTH)) != 0;
    const bool writable = (mode & (S_IWGRP | S_IWOTH)) != 0;
    if (others == OpenToOthers::kRefused && (readable || writable)) {
        problem = !writable  ? "can be read by others: run chmod go-r"
                  : readable ? "can be read and changed by others: run chmod go-rw"
                             : "can be changed by others: run chmod go-w";
        return PrivateReading::kOpenToOthers;
    }
    size = 0;
    while (size < capacity) {
        const ssize_t count = readSome(file->descriptor.get(), buffer + size, capacity - size);
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
    const Place place(nativeUtf8Path(path));
    const auto& [directory, name] = place;
    if (!directory) {
        return problemText("cannot be created", errno);
    }
    struct stat attributes {};
    if (::fstatat(directory.get(), name.c_str(), &attributes, AT_SYMLINK_NOFOLLOW) == 0) {
        return problemText("cannot be created", EEXIST);
    }
    PendingFile file(directory.get(), modeFor(readers));
    if (!file) {
        return problemText("cannot be created", errno);
    }
    if (!file.write(bytes, count) || !file.publish(name)) {
        return problemText(errno == EEXIST ? "cannot be created" : "cannot be written", errno);
    }
    return "";
}

std::string replaceFile(const String& path, const unsigned char* bytes, std::size_t count,
                        Readers readers) {
    const Place place(nativeUtf8Path(path));
    const auto& [directory, name] = place;
    if (!directory) {
        return problemText("cannot be created", errno);
    }
    // A file that may not be written may not be replaced either.
    struct stat attributes {};
    const bool exists = ::fstatat(directory.get(), name.c_str(), &attributes, 0) == 0;
    if (exists && ::faccessat(directory.get(), name.c_str(), W_OK, AT_EACCESS) != 0) {
        return problemText("cannot be written", errno);
    }
    PendingFile file(directory.get(), modeFor(readers));
    if (!file) {
        return problemText("cannot be created", errno);
    }
    if (exists && readers == Readers::kEveryone) {
        file.setMode(attributes.st_mode & kPermissions);
    }
    if (!file.write(bytes, count) || !file.replace(name)) {
        return problemText("cannot be written", errno);
    }
    return "";
}

void removeUnfinishedFiles(const String& path) {
    const FileDescriptor directory(::open(nativeUtf8Path(path).c_str(), kPassThrough));
    if (directory) {
        PendingFile::removeAbandonedIn(directory.get());
    }
}

Moving moveToNew(const String& from, const String& to, std::string& problem) {
    if (renameToNew(AT_FDCWD, nativeUtf8Path(from), nativeUtf8Path(to))) {
        return Moving::kDone;
    }
    const bool taken = errno == EEXIST || errno == ENOTEMPTY;
    problem = problemText("cannot be created", errno);
    return taken ? Moving::kNameTaken : Moving::kFailed;
}

}  // namespace VelmoraQuavin::internal::platform
