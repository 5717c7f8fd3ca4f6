// Preloaded into the command line, this makes one call that may change a folder fail, or the last
// one that the process makes. Reads the environment:
//   QUAVIN_FAULT_FOLDER  only calls on files below it count, and on the folder itself
//   QUAVIN_FAULT_LOG     a file elsewhere that gets a line for each of them: the function and the
//   path QUAVIN_FAULT_KIND    "fail" for the error of a full or broken disk, "full" for the same
//   from then on,
//                        "kill" for an end without warning, "short" for writes that write half,
//                        each of them
//   QUAVIN_FAULT_AT      which call, counted from 1 and across a copy of the process

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace {

// A process and its copies share the count.
struct Faults {
    std::string folder;
    int log = -1;
    std::string kind;
    int at = 0;
    std::atomic<int>* count = nullptr;
};

std::string environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

Faults* makeFaults() {
    auto* const faults = new Faults;
    faults->folder = environment("QUAVIN_FAULT_FOLDER");
    faults->kind = environment("QUAVIN_FAULT_KIND");
    faults->at = std::stoi(environment("QUAVIN_FAULT_AT"));
    faults->log =
        static_cast<int>(::syscall(SYS_openat, AT_FDCWD, environment("QUAVIN_FAULT_LOG").c_str(),
                                   O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    void* const shared = ::mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                                MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    faults->count = new (shared) std::atomic<int>(0);
    return faults;
}

// Never freed: files are closed until the very end. Null before the library is ready.
const Faults* const activeFaults = makeFaults();

std::string linkTarget(const std::string& link) {
    std::array<char, PATH_MAX> target{};
    const ssize_t size = ::readlink(link.c_str(), target.data(), target.size());
    return {target.data(), size < 0 ? 0 : static_cast<std::size_t>(size)};
}

std::string pathOf(int descriptor) {
    return linkTarget("/proc/self/fd/" + std::to_string(descriptor));
}

std::string pathOf(int directory, const char* path) {
    if (*path == '/') {
        return path;
    }
    return (directory == AT_FDCWD ? linkTarget("/proc/self/cwd") : pathOf(directory)) + "/" + path;
}

enum class Fault { kNone, kFail, kKill, kShort };

// Counts a call on a path, and tells what to do to it.
Fault faultFor(std::string_view function, const std::string& path, bool grows) {
    const Faults* const faults = activeFaults;
    if (faults == nullptr || faults->folder.empty() ||
        (path + "/").compare(0, faults->folder.size() + 1, faults->folder + "/") != 0) {
        return Fault::kNone;
    }
    const std::string line =
        std::string(function) + " " + path.substr(faults->folder.size()) + "\n";
    static_cast<void>(::syscall(SYS_write, faults->log, line.data(), line.size()));
    const int which = ++*faults->count;
    if (faults->kind == "short") {
        return Fault::kShort;
    }
    if (faults->kind == "full") {
        return which >= faults->at && grows ? Fault::kFail : Fault::kNone;
    }
    if (which != faults->at) {
        return Fault::kNone;
    }
    return faults->kind == "kill" ? Fault::kKill : Fault::kFail;
}

[[noreturn]] void endHere() {
    static_cast<void>(::kill(::getpid(), SIGKILL));
    std::abort();
}

// Makes a call, or what takes its place.
template <typename Call>
auto perform(const char* function, const std::string& path, bool grows, Call call)
    -> decltype(call()) {
    const int before = errno;
    const Fault fault = faultFor(function, path, grows);
    if (fault == Fault::kKill) {
        endHere();
    }
    if (fault == Fault::kFail) {
        errno = grows ? ENOSPC : EIO;
        return -1;
    }
    errno = before;
    return call();
}

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

using Opening = int(const char*, int, ...);
using OpeningAt = int(int, const char*, int, ...);

constexpr int kWithMode = O_CREAT | O_TMPFILE;

int openAt(const char* function, int directory, const char* path, int flags, mode_t mode) {
    static auto* const real = next<OpeningAt>("openat");
    const bool creates = (flags & O_CREAT) != 0;
    return perform(creates ? "create" : function, pathOf(directory, path), creates,
                   [&] { return real(directory, path, flags, mode); });
}

mode_t modeIn(int flags, std::va_list arguments) {
    return (flags & kWithMode) != 0 ? static_cast<mode_t>(va_arg(arguments, int)) : 0;
}

// A disk that fills up in the middle takes a part.
template <typename Write>
ssize_t writeSome(const char* function, int file, std::size_t size, Write write) {
    const int before = errno;
    const Fault fault = faultFor(function, pathOf(file), true);
    errno = before;
    if (fault == Fault::kNone) {
        return write(size);
    }
    const ssize_t written = write((size + 1) / 2);
    if (fault == Fault::kKill) {
        endHere();
    }
    if (fault == Fault::kFail) {
        errno = ENOSPC;
        return -1;
    }
    return written;
}

}  // namespace

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name, cert-dcl50-cpp)
#pragma GCC visibility push(default)
extern "C" {

int open(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return openAt("open", AT_FDCWD, path, flags, mode);
}
int open64(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return openAt("open", AT_FDCWD, path, flags, mode);
}
int openat(int directory, const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return openAt("openat", directory, path, flags, mode);
}
int openat64(int directory, const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return openAt("openat", directory, path, flags, mode);
}
// How fortified code opens files that it does not create.
// NOLINTBEGIN(bugprone-reserved-identifier)
int __open_2(const char* path, int flags) {
    return openAt("open", AT_FDCWD, path, flags, 0);
}
int __open64_2(const char* path, int flags) {
    return openAt("open", AT_FDCWD, path, flags, 0);
}
int __openat_2(int directory, const char* path, int flags) {
    return openAt("openat", directory, path, flags, 0);
}
int __openat64_2(int directory, const char* path, int flags) {
    return openAt("openat", directory, path, flags, 0);
}
// NOLINTEND(bugprone-reserved-identifier)

ssize_t write(int file, const void* bytes, std::size_t size) {
    static auto* const real = next<decltype(write)>("write");
    return writeSome("write", file, size,
                     [&](std::size_t some) { return real(file, bytes, some); });
}
ssize_t pwrite(int file, const void* bytes, std::size_t size, off_t offset) {
    static auto* const real = next<decltype(pwrite)>("pwrite");
    return writeSome("pwrite", file, size,
                     [&](std::size_t some) { return real(file, bytes, some, offset); });
}

int close(int file) {
    static auto* const real = next<decltype(close)>("close");
    // A descriptor is gone even if closing it fails.
    bool closed = false;
    const int result = perform("close", pathOf(file), false, [&] {
        closed = true;
        return real(file);
    });
    if (!closed) {
        static_cast<void>(real(file));
        errno = EIO;
    }
    return result;
}
int fcntl64(int file, int command, ...) {
    static auto* const real = next<int(int, int, ...)>("fcntl64");
    std::va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    return command != F_DUPFD_CLOEXEC ? real(file, command, argument)
                                      : perform("fcntl", pathOf(file), false,
                                                [&] { return real(file, command, argument); });
}
int fcntl(int file, int command, ...) {
    std::va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    return fcntl64(file, command, argument);
}
int flock(int file, int operation) {
    static auto* const real = next<decltype(flock)>("flock");
    return perform("flock", pathOf(file), false, [&] { return real(file, operation); });
}
int fchmod(int file, mode_t mode) {
    static auto* const real = next<decltype(fchmod)>("fchmod");
    return perform("fchmod", pathOf(file), false, [&] { return real(file, mode); });
}
int ftruncate(int file, off_t size) {
    static auto* const real = next<decltype(ftruncate)>("ftruncate");
    return perform("ftruncate", pathOf(file), true, [&] { return real(file, size); });
}
int fsync(int file) {
    static auto* const real = next<decltype(fsync)>("fsync");
    return perform("fsync", pathOf(file), false, [&] { return real(file); });
}
int fdatasync(int file) {
    static auto* const real = next<decltype(fdatasync)>("fdatasync");
    return perform("fdatasync", pathOf(file), false, [&] { return real(file); });
}

int mkdir(const char* path, mode_t mode) {
    static auto* const real = next<decltype(mkdir)>("mkdir");
    return perform("mkdir", pathOf(AT_FDCWD, path), true, [&] { return real(path, mode); });
}
int mkdirat(int directory, const char* path, mode_t mode) {
    static auto* const real = next<decltype(mkdirat)>("mkdirat");
    return perform("mkdirat", pathOf(directory, path), true,
                   [&] { return real(directory, path, mode); });
}
int rename(const char* from, const char* to) {
    static auto* const real = next<decltype(rename)>("rename");
    return perform("rename", pathOf(AT_FDCWD, to), true, [&] { return real(from, to); });
}
int renameat(int fromDirectory, const char* from, int toDirectory, const char* to) {
    static auto* const real = next<decltype(renameat)>("renameat");
    return perform("renameat", pathOf(toDirectory, to), true,
                   [&] { return real(fromDirectory, from, toDirectory, to); });
}
int renameat2(int fromDirectory, const char* from, int toDirectory, const char* to,
              unsigned int flags) {
    static auto* const real = next<decltype(renameat2)>("renameat2");
    return perform("renameat2", pathOf(toDirectory, to), true,
                   [&] { return real(fromDirectory, from, toDirectory, to, flags); });
}
int linkat(int fromDirectory, const char* from, int toDirectory, const char* to, int flags) {
    static auto* const real = next<decltype(linkat)>("linkat");
    return perform("linkat", pathOf(toDirectory, to), true,
                   [&] { return real(fromDirectory, from, toDirectory, to, flags); });
}
int unlink(const char* path) {
    static auto* const real = next<decltype(unlink)>("unlink");
    return perform("unlink", pathOf(AT_FDCWD, path), false, [&] { return real(path); });
}
int unlinkat(int directory, const char* path, int flags) {
    static auto* const real = next<decltype(unlinkat)>("unlinkat");
    return perform("unlinkat", pathOf(directory, path), false,
                   [&] { return real(directory, path, flags); });
}
int remove(const char* path) {
    static auto* const real = next<decltype(remove)>("remove");
    return perform("remove", pathOf(AT_FDCWD, path), false, [&] { return real(path); });
}
int rmdir(const char* path) {
    static auto* const real = next<decltype(rmdir)>("rmdir");
    return perform("rmdir", pathOf(AT_FDCWD, path), false, [&] { return real(path); });
}

}  // extern "C"
#pragma GCC visibility pop
// NOLINTEND(readability-inconsistent-declaration-parameter-name, cert-dcl50-cpp)
