#include "allocation_watch.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

#include "support/heap.h"

namespace VelmoraQuavin::testing {
namespace {

constexpr std::size_t kWideAlignment = 64;

// Counted without ordering anything, which would hide races from ThreadSanitizer.
std::atomic<int> alignedBlocks{0};
std::atomic<FreeWatch*> activeWatch{nullptr};
thread_local int allocationsUntilFailure = 0;  // none fails at 0

bool mustFail(const void* caller) noexcept {
    if (allocationsUntilFailure == 0 || !isOfThisProgram(caller)) {
        return false;
    }
    --allocationsUntilFailure;
    return allocationsUntilFailure == 0;
}

void* allocate(const void* caller, std::size_t size) noexcept {
    return mustFail(caller) ? nullptr : std::malloc(size);
}

void* allocate(const void* caller, std::size_t size, std::align_val_t alignment) noexcept {
    if (mustFail(caller)) {
        return nullptr;
    }
    const auto multiple = static_cast<std::size_t>(alignment);
    void* const block = allocateAligned(multiple, size);
    if (block != nullptr && multiple >= kWideAlignment) {
        alignedBlocks.fetch_add(1, std::memory_order_relaxed);
    }
    return block;
}

void notifyWatch(void* block, std::size_t size) noexcept {
    FreeWatch* const watch = activeWatch;
    if (watch != nullptr) {
        watch->blockIsFreed(static_cast<unsigned char*>(block), size);
    }
}

void release(void* block) noexcept {
    if (block != nullptr) {
        notifyWatch(block, sizeOfBlock(block));
    }
    std::free(block);
}

void release(void* block, std::align_val_t alignment) noexcept {
    if (block == nullptr) {
        return;
    }
    const auto multiple = static_cast<std::size_t>(alignment);
    if (multiple >= kWideAlignment) {
        alignedBlocks.fetch_sub(1, std::memory_order_relaxed);
    }
    notifyWatch(block, sizeOfAligned(block, multiple));
    freeAligned(block);
}

void* orThrow(void* block) {
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

}  // namespace

int alignedBlocksInUse() noexcept {
    return alignedBlocks;
}

AllocationFailure::AllocationFailure(int which) : which_(which) {
    allocationsUntilFailure = which;
}

AllocationFailure::~AllocationFailure() {
    allocationsUntilFailure = 0;
}

bool AllocationFailure::happened() const {
    return allocationsUntilFailure == 0;
}

int AllocationFailure::made() const {
    return which_ - allocationsUntilFailure;
}

FreeWatch::FreeWatch() {
    activeWatch = this;
}

FreeWatch::~FreeWatch() {
    activeWatch = nullptr;
}

void FreeWatch::watch(const void* bytes, std::size_t count) {
    bytes_ = static_cast<const unsigned char*>(bytes);
    count_ = count;
    freed_ = false;
    zero_ = false;
}

void FreeWatch::blockIsFreed(const unsigned char* block, std::size_t size) noexcept {
    const bool holdsBytes = bytes_ != nullptr && block <= bytes_ && bytes_ + count_ <= block + size;
    if (holdsBytes && !freed_) {
        freed_ = true;
        zero_ = std::all_of(bytes_, bytes_ + count_, [](unsigned char byte) { return byte == 0; });
    }
}

}  // namespace VelmoraQuavin::testing

using VelmoraQuavin::testing::allocate;
using VelmoraQuavin::testing::orThrow;
using VelmoraQuavin::testing::release;

// All forms, because the array forms of an instrumented build do not call the others.
void* operator new(std::size_t size) {
    return orThrow(allocate(__builtin_return_address(0), size));
}
void* operator new[](std::size_t size) {
    return orThrow(allocate(__builtin_return_address(0), size));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(__builtin_return_address(0), size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(__builtin_return_address(0), size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return orThrow(allocate(__builtin_return_address(0), size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return orThrow(allocate(__builtin_return_address(0), size, alignment));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return allocate(__builtin_return_address(0), size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return allocate(__builtin_return_address(0), size, alignment);
}

void operator delete(void* block) noexcept {
    release(block);
}
void operator delete[](void* block) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    release(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    release(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    release(block);
}
void operator delete(void* block, std::align_val_t alignment) noexcept {
    release(block, alignment);
}
void operator delete[](void* block, std::align_val_t alignment) noexcept {
    release(block, alignment);
}
void operator delete(void* block, std::size_t, std::align_val_t alignment) noexcept {
    release(block, alignment);
}
void operator delete[](void* block, std::size_t, std::align_val_t alignment) noexcept {
    release(block, alignment);
}
void operator delete(void* block, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    release(block, alignment);
}
void operator delete[](void* block, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    release(block, alignment);
}
