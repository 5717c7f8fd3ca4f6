#pragma once

#include <cstdint>
#include <filesystem>

namespace benchmark {

/// A new empty folder on a memory-backed file system, removed with its contents.
class MemoryFolder {
public:
    /// @param parent where to create it; empty for /dev/shm or, if that is too small, another
    ///        memory-backed file system.
    /// @param bytes the room it needs.
    /// @throws std::runtime_error listing what was tried, if none has the room.
    MemoryFolder(const std::filesystem::path& parent, std::uint64_t bytes);
    ~MemoryFolder();
    MemoryFolder(const MemoryFolder&) = delete;
    MemoryFolder& operator=(const MemoryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace benchmark
