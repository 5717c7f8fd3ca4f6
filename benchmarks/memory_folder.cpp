#include "memory_folder.h"

#include <linux/magic.h>
#include <mntent.h>
#include <sys/statfs.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace benchmark {
namespace {

std::vector<std::string> mountsInMemory() {
    std::vector<std::string> folders{"/dev/shm"};
    if (FILE* const mounts = ::setmntent("/proc/self/mounts", "r"); mounts != nullptr) {
        while (const mntent* const mount = ::getmntent(mounts)) {
            if (std::strcmp(mount->mnt_type, "tmpfs") == 0) {
                folders.emplace_back(mount->mnt_dir);
            }
        }
        ::endmntent(mounts);
    }
    return folders;
}

// Why the folder is not suitable; empty if it is.
std::string objection(const std::string& folder, std::uint64_t bytes) {
    struct statvfs room {};
    struct statfs kind {};
    if (::statvfs(folder.c_str(), &room) != 0 || ::statfs(folder.c_str(), &kind) != 0) {
        return "cannot be examined";
    }
    if (kind.f_type != TMPFS_MAGIC) {
        return "is not on a tmpfs";
    }
    if (::access(folder.c_str(), W_OK | X_OK) != 0) {
        return "cannot be written to";
    }
    const std::uint64_t left = std::uint64_t{room.f_bavail} * room.f_frsize;
    if (left < bytes) {
        return "has " + std::to_string(left >> 20) + " MiB left";
    }
    return "";
}

}  // namespace

MemoryFolder::MemoryFolder(const std::filesystem::path& parent, std::uint64_t bytes) {
    std::string tried;
    const auto candidates =
        parent.empty() ? mountsInMemory() : std::vector<std::string>{parent.string()};
    for (const std::string& candidate : candidates) {
        const std::string problem = objection(candidate, bytes);
        if (!problem.empty()) {
            tried.append("\n  ").append(candidate).append(" ").append(problem);
            continue;
        }
        std::string name = candidate + "/quavin-benchmark-XXXXXX";
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), name);
        }
        path_ = name;
        return;
    }
    throw std::runtime_error("no memory-backed folder with " + std::to_string(bytes >> 20) +
                             " MiB; mount a tmpfs and pass its path:" + tried);
}

MemoryFolder::~MemoryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace benchmark
