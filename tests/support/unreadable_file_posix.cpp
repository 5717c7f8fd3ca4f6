// Replaces the C library's read() in programs that link this file: there is no other way to
// simulate a failing disk.

#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <stdexcept>

#include "support/unreadable_file.h"

namespace {

struct Entry {
    dev_t device = 0;
    ino_t number = 0;
};
std::optional<Entry> unreadable;

ssize_t readUnlessBroken(int file, void* buffer, size_t count) {
    struct stat attributes {};
    if (unreadable && ::fstat(file, &attributes) == 0 && attributes.st_dev == unreadable->device &&
        attributes.st_ino == unreadable->number) {
        errno = EIO;
        return -1;
    }
    return ::syscall(SYS_read, file, buffer, count);
}

}  // namespace

// read(), and its form when the compiler checks buffer sizes. They have other names here because
// the C library's headers declare the first, and the second is reserved.
extern "C" {
[[gnu::visibility("default")]] ssize_t readOfThisProgram(int file, void* buffer,
                                                         size_t count) asm("read");
[[gnu::visibility("default")]] ssize_t checkedReadOfThisProgram(int file, void* buffer,
                                                                size_t count,
                                                                size_t room) asm("__read_chk");

ssize_t readOfThisProgram(int file, void* buffer, size_t count) {
    return readUnlessBroken(file, buffer, count);
}

ssize_t checkedReadOfThisProgram(int file, void* buffer, size_t count, size_t /*room*/) {
    return readUnlessBroken(file, buffer, count);
}
}  // extern "C"

namespace VelmoraQuavin::testing {

UnreadableFile::UnreadableFile(const std::filesystem::path& path) {
    struct stat attributes {};
    if (::stat(path.c_str(), &attributes) != 0) {
        throw std::runtime_error("there is no " + path.string());
    }
    unreadable = Entry{attributes.st_dev, attributes.st_ino};
}

UnreadableFile::~UnreadableFile() {
    unreadable.reset();
}

}  // namespace VelmoraQuavin::testing
