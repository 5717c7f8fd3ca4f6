#pragma once

#include <cstdint>
#include <filesystem>

namespace benchmark {

/// A new empty folder on a memory-backed file system, removed with all that is in it.
class MemoryFolder {
public:
    /// @param parent where to make it; empty for /dev/shm or, where that is too small, another
    ///        memory-backed file system.
    /// @param bytes how much room it needs.
    /// @throws std::runtime_error that lists what was tried, where none has the room.
    MemoryFolder(const std::filesystem::path& parent, std::uint64_t bytes);
    ~MemoryFolder();
    MemoryFolder(const MemoryFolder&) = delete;
    MemoryFolder& operator=(const MemoryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace benchmark
