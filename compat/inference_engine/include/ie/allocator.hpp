// Where blobs get their memory from.
#pragma once

#include <cstddef>

#include "ie/release.hpp"

namespace InferenceEngine {

enum LockOp {
    LOCK_FOR_READ = 0,
    LOCK_FOR_WRITE,
};

/**
 * Hands out memory as handles, which turn into addresses while they are locked. Blobs share
 * ownership of their allocator, so it outlives every blob created with it.
 */
class IAllocator : public details::IRelease {
public:
    /** The address of the memory behind the handle; null if there is none. */
    virtual void* lock(void* handle, LockOp operation = LOCK_FOR_WRITE) noexcept = 0;
    virtual void unlock(void* handle) noexcept = 0;
    /** A handle to that many bytes; null if they can't be allocated. Zero bytes are a request like
     * any other. */
    virtual void* alloc(std::size_t size) noexcept = 0;
    /** Frees the handle; returns whether it was one of this allocator's. */
    virtual bool free(void* handle) noexcept = 0;

protected:
    ~IAllocator() override = default;
};

/** An allocator of uninitialised heap memory, aligned to cache lines. The caller releases it. */
IAllocator* CreateDefaultAllocator() noexcept;

}  // namespace InferenceEngine
