// Where blobs take their memory from.
#pragma once

#include <cstddef>

#include "ie/release.hpp"

namespace InferenceEngine {

enum LockOp {
    LOCK_FOR_READ = 0,
    LOCK_FOR_WRITE,
};

/**
 * Gives memory as handles, which become addresses while they are locked. A blob holds its allocator
 * shared, so an allocator outlives every blob made from it.
 */
class IAllocator : public details::IRelease {
public:
    /** The address of the memory behind the handle; null if there is none. */
    virtual void* lock(void* handle, LockOp operation = LOCK_FOR_WRITE) noexcept = 0;
    virtual void unlock(void* handle) noexcept = 0;
    /** A handle of that many bytes; null if they can't be had. Zero bytes are a request like any
     * other. */
    virtual void* alloc(std::size_t size) noexcept = 0;
    /** Whether the handle was one of this allocator's. */
    virtual bool free(void* handle) noexcept = 0;

protected:
    ~IAllocator() override = default;
};

/** Memory of the heap, on a cache line's boundary and not initialised. The caller releases it. */
IAllocator* CreateDefaultAllocator() noexcept;

}  // namespace InferenceEngine
