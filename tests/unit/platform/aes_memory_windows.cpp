// Decryption allocates its scratch memory with the array form of new that does not throw. Replaces
// the global operators for this whole program.

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

#include "support/heap.h"
#include "unit/platform/aes_memory.h"
#include "unit/platform/aes_scratch_windows.h"

namespace VelmoraQuavin::testing {
namespace {

// Allocations that still succeed; negative while none is to fail.
std::atomic<int> allocationsLeft{-1};
std::atomic<AesScratchWatch*> activeWatch{nullptr};

void* allocate(std::size_t size) noexcept {
    AesScratchWatch* const watch = activeWatch;
    void* const block = std::malloc(size);
    if (watch != nullptr && block != nullptr) {
        watch->isMade(block, size);
    }
    return block;
}

void* allocateIfGranted(std::size_t size) noexcept {
    const int left = allocationsLeft.load();
    if (left > 0) {
        allocationsLeft = left - 1;
    }
    return left != 0 ? allocate(size) : nullptr;
}

void* orThrow(void* block) {
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void release(void* block) noexcept {
    AesScratchWatch* const watch = activeWatch;
    if (watch != nullptr && block != nullptr) {
        watch->isFreed(block);
    }
    std::free(block);
}

}  // namespace

const int kLeastAesAllocations = 1;

bool canFailAesAllocations() {
    return true;
}

void grantAesAllocations(int count) {
    allocationsLeft = count;
}

void grantAllAesAllocations() {
    allocationsLeft = -1;
}

bool hostSeesNoAesError() {
    return true;  // there is no such list
}

AesScratchWatch::AesScratchWatch(std::size_t least) : least_(least) {
    activeWatch = this;
}

AesScratchWatch::~AesScratchWatch() {
    activeWatch = nullptr;
}

void AesScratchWatch::isMade(void* block, std::size_t size) noexcept {
    if (size >= least_) {
        ++made_;
        block_ = block;
        size_ = size;
        wiped_ = false;
    }
}

void AesScratchWatch::isFreed(const void* block) noexcept {
    if (block == block_) {
        const auto* const bytes = static_cast<const unsigned char*>(block);
        wiped_ = std::all_of(bytes, bytes + size_, [](unsigned char byte) { return byte == 0; });
        block_ = nullptr;
    }
}

}  // namespace VelmoraQuavin::testing

using VelmoraQuavin::testing::allocate;
using VelmoraQuavin::testing::allocateIfGranted;
using VelmoraQuavin::testing::orThrow;
using VelmoraQuavin::testing::release;

void* operator new(std::size_t size) {
    return orThrow(allocate(size));
}
void* operator new[](std::size_t size) {
    return orThrow(allocate(size));
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocateIfGranted(size);
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
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    release(block);
}
