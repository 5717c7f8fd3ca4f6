#include "platform/confined_directory_implementation.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/directory_walk.h"
#include "platform/posix/file_descriptor.h"
#include "platform/posix/native_path.h"
#include "platform/posix/pending_file.h"
#include "platform/posix/whole_write.h"

namespace VelmoraQuavin::internal::platform {
namespace {

// Before the process's umask.
constexpr mode_t kDirectoryMode = 0777;
constexpr mode_t kFileMode = 0666;

// Why an existing entry cannot be used.
std::string obstacle(int directory, const std::string& name, const char* otherwise, int error) {
    struct stat attributes {};
    if (::fstatat(directory, name.c_str(), &attributes, AT_SYMLINK_NOFOLLOW) != 0) {
        return problemText(otherwise, error);
    }
    const auto isA = [&attributes](mode_t kind) { return (attributes.st_mode & S_IFMT) == kind; };
    if (isA(S_IFLNK)) {
        return "a symbolic link is in its way";
    }
    if (isA(S_IFREG)) {
        return error == ENOTDIR ? "a file is where a directory is needed"
                                : problemText(otherwise, error);
    }
    if (isA(S_IFDIR)) {
        return error == EEXIST ? "a directory is where the file is needed"
                               : problemText(otherwise, error);
    }
    return "something that is not a regular file is in its way";
}

class PosixDirectory : public ConfinedDirectory::Implementation {
public:
    explicit PosixDirectory(FileDescriptor root) : walk_(std::move(root)) {}

    std::string enter(ConfinedDirectory::Names::const_iterator begin,
                      ConfinedDirectory::Names::const_iterator end) override {
        return walk_.enter(begin, end, openOrCreate);
    }

    std::string write(const std::string& name, const void* content, std::uint64_t size) override {
        const int directory = walk_.current().get();
        struct stat attributes {};
        const bool exists =
            ::fstatat(directory, name.c_str(), &attributes, AT_SYMLINK_NOFOLLOW) == 0;
        if (exists ? !S_ISREG(attributes.st_mode) : errno != ENOENT) {
            return obstacle(directory, name, "the file cannot be created", exists ? EEXIST : errno);
        }
        PendingFile file(directory, kFileMode);
        if (!file) {
            return problemText("the file cannot be created", errno);
        }
        // Replaced rather than overwritten: a hard link to it elsewhere keeps its content.
        if (!file.write(content, size) || !file.replace(name)) {
            return problemText("the file cannot be written", errno);
        }
        return "";
    }

private:
    static std::string openOrCreate(const FileDescriptor& directory, const std::string& name,
                                    FileDescriptor& opened) {
        const int from = directory.get();
        const auto open = [&] {
            opened = FileDescriptor(::openat(from, name.c_str(), kPassThrough | O_NOFOLLOW));
        };
        open();
        if (!opened && errno == ENOENT &&
            (::mkdirat(from, name.c_str(), kDirectoryMode) == 0 || errno == EEXIST)) {
            open();
        }
        return opened ? "" : obstacle(from, name, "a directory cannot be created or opened", errno);
    }

    DirectoryWalk<FileDescriptor> walk_;
};

}  // namespace

std::optional<ConfinedDirectory> ConfinedDirectory::open(const String& path) {
    FileDescriptor root(::open(nativeUtf8Path(path).c_str(), kPassThrough));
    if (!root) {
        return std::nullopt;
    }
    return ConfinedDirectory(std::make_unique<PosixDirectory>(std::move(root)));
}

}  // namespace VelmoraQuavin::internal::platform
