#pragma once

#include <cstddef>

namespace VelmoraQuavin::testing {

/// Blocks of operator new with an alignment of 64 bytes or more that have not been freed yet. Only
/// in programs that compile allocation_watch.cpp, which replaces the global operators.
int alignedBlocksInUse() noexcept;

/// Makes one of this thread's allocations fail. Only allocations by this program's own code count,
/// because the engine's runtime does not survive every failed allocation of its own. One at a time.
class AllocationFailure {
public:
    /// @param which 1 for the next allocation, 2 for the one after it, ...
    explicit AllocationFailure(int which);
    AllocationFailure(const AllocationFailure&) = delete;
    AllocationFailure& operator=(const AllocationFailure&) = delete;
    ~AllocationFailure();

    /// Whether that many allocations were made, so that one failed.
    bool happened() const;
    /// The allocations made so far, unless one failed.
    int made() const;

private:
    int which_;
};

/// Watches a run of bytes until the block that holds it is freed. One at a time.
class FreeWatch {
public:
    FreeWatch();
    FreeWatch(const FreeWatch&) = delete;
    FreeWatch& operator=(const FreeWatch&) = delete;
    ~FreeWatch();

    void watch(const void* bytes, std::size_t count);
    bool wasFreed() const { return freed_; }
    /// Whether all bytes were zero just before they were freed.
    bool wasZeroWhenFreed() const { return zero_; }

    /// Called by the operators.
    void blockIsFreed(const unsigned char* block, std::size_t size) noexcept;

private:
    const unsigned char* bytes_ = nullptr;
    std::size_t count_ = 0;
    bool freed_ = false;
    bool zero_ = false;
};

}  // namespace VelmoraQuavin::testing
