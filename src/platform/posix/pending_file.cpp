#include "platform/posix/pending_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/posix/new_name.h"
#include "platform/posix/whole_write.h"

namespace VelmoraQuavin::internal::platform {
namespace {

// The first names are shared by all processes, so that files left under them are found again; the
// others are for when all of those are taken.
constexpr int kSharedNames = 64;
constexpr int kNames = 128;

// The sticky bit has no meaning on files, so no finished file has it.
constexpr mode_t kUnfinished = S_ISVTX;
constexpr mode_t kModeBits = 07777;

std::string nameFor(int attempt) {
    return attempt < kSharedNames
               ? ".quavin-" + std::to_string(attempt)
               : ".quavin-" + std::to_string(::getpid()) + "-" + std::to_string(attempt);
}

bool isOurUnfinished(const struct stat& attributes) {
    return S_ISREG(attributes.st_mode) && attributes.st_uid == ::geteuid() &&
           (attributes.st_mode & kUnfinished) != 0;
}

// Removes an unfinished file that no process is working on.
bool removeAbandoned(int directory, const std::string& name) {
    struct stat found {};
    const auto look = [&](struct stat& attributes) {
        return ::fstatat(directory, name.c_str(), &attributes, AT_SYMLINK_NOFOLLOW) == 0 &&
               isOurUnfinished(attributes);
    };
    if (!look(found)) {
        return false;
    }
    const FileDescriptor file(
        ::openat(directory, name.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file || ::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        return false;
    }
    // Its owner may have finished it before we got the lock.
    struct stat locked {};
    struct stat there {};
    return ::fstat(file.get(), &locked) == 0 && look(there) && locked.st_dev == there.st_dev &&
           locked.st_ino == there.st_ino && ::unlinkat(directory, name.c_str(), 0) == 0;
}

}  // namespace

PendingFile::PendingFile(int directory, mode_t mode) : directory_(directory) {
    for (int attempt = 0; attempt < kNames; ++attempt) {
        const std::string name = nameFor(attempt);
        if (open(name, mode) || errno != EEXIST) {
            return;
        }
        if (removeAbandoned(directory, name) && open(name, mode)) {
            return;
        }
    }
    errno = EEXIST;
}

PendingFile::~PendingFile() {
    if (!name_.empty()) {
        ::unlinkat(directory_, name_.c_str(), 0);
    }
}

bool PendingFile::open(const std::string& name, mode_t mode) {
    constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    file_ = FileDescriptor(::openat(directory_, name.c_str(), kFlags, mode));
    if (!file_) {
        return false;
    }
    name_ = name;
    struct stat attributes {};
    mode_ = ::fstat(file_.get(), &attributes) == 0 ? attributes.st_mode & kModeBits : mode;
    // Marked only after it is locked, so that a marked file without a lock is known to be
    // abandoned. On file systems without locks or modes, leftovers stay, but do no harm.
    if (::flock(file_.get(), LOCK_EX | LOCK_NB) == 0) {
        ::fchmod(file_.get(), mode_ | kUnfinished);
    }
    return true;
}

void PendingFile::removeAbandonedIn(int directory) {
    for (int attempt = 0; attempt < kSharedNames; ++attempt) {
        removeAbandoned(directory, nameFor(attempt));
    }
}

bool PendingFile::write(const void* bytes, std::uint64_t count) {
    return writeWhole(file_.get(), bytes, count);
}

// Some file systems report write errors only on close. Closing a second descriptor reports them as
// well, and keeps the lock.
bool PendingFile::flush() {
    FileDescriptor second(::fcntl(file_.get(), F_DUPFD_CLOEXEC, 0));
    return second && second.close();
}

// The last step, so that a process killed before it leaves either a marked file or a complete one.
void PendingFile::finish() {
    name_.clear();
    ::fchmod(file_.get(), mode_);
}

bool PendingFile::replace(const std::string& name) {
    if (!flush() || ::renameat(directory_, name_.c_str(), directory_, name.c_str()) != 0) {
        return false;
    }
    finish();
    return true;
}

bool PendingFile::publish(const std::string& name) {
    if (!flush() || !renameToNew(directory_, name_, name)) {
        return false;
    }
    finish();
    return true;
}

}  // namespace VelmoraQuavin::internal::platform
