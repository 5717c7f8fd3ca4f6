#include "engine/openvino/output_pool.h"

#include "core/sized_block.h"

namespace VelmoraQuavin::internal {
namespace {

// One for a host that drops an output before the next call, and another for one that drops it
// after.
constexpr std::size_t kMostFreeBlocks = 2;

}  // namespace

std::shared_ptr<OutputPool> OutputPool::make() {
    return std::shared_ptr<OutputPool>(new OutputPool, [](OutputPool* pool) { pool->Release(); });
}

OutputPool::OutputPool() {
    freeBlocks_.reserve(kMostFreeBlocks);
}

OutputPool::~OutputPool() {
    close();
}

void OutputPool::Release() noexcept {
    delete this;
}

void* OutputPool::lock(void* handle, InferenceEngine::LockOp /*operation*/) noexcept {
    return handle;
}

void OutputPool::unlock(void* /*handle*/) noexcept {}

void* OutputPool::alloc(std::size_t size) noexcept {
    {
        const std::scoped_lock guard(mutex_);
        if (!freeBlocks_.empty() && sizeOfBlock(freeBlocks_.back()) == size) {
            void* const block = freeBlocks_.back();
            freeBlocks_.pop_back();
            return block;
        }
    }
    return allocateSizedBlock(size);
}

bool OutputPool::free(void* handle) noexcept {
    if (handle == nullptr) {
        return false;
    }
    {
        const std::scoped_lock guard(mutex_);
        if (!closed_ && freeBlocks_.size() < kMostFreeBlocks) {
            freeBlocks_.push_back(handle);
            return true;
        }
    }
    freeSizedBlock(handle);
    return true;
}

void OutputPool::close() noexcept {
    const std::scoped_lock guard(mutex_);
    closed_ = true;
    for (void* const block : freeBlocks_) {
        freeSizedBlock(block);
    }
    freeBlocks_.clear();
}

}  // namespace VelmoraQuavin::internal
