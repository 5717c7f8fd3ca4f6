#pragma once

#include <cstddef>
#include <inference_engine.hpp>
#include <memory>
#include <mutex>
#include <vector>

namespace VelmoraQuavin::internal {

/// The memory of one output's blobs. Every prediction gets its own blob, but memory that is no
/// longer referenced is reused, so that repeated predictions allocate no large blocks, and the
/// engine finds the same address already bound.
///
/// Each blob keeps the pool alive, so the pool may outlive the model. Blobs may be dropped on any
/// thread: a briefly held mutex guards the free blocks.
class OutputPool : public InferenceEngine::IAllocator {
public:
    static std::shared_ptr<OutputPool> make();

    void* lock(void* handle, InferenceEngine::LockOp operation) noexcept override;
    void unlock(void* handle) noexcept override;
    /// The block freed last, if it has this size; otherwise a new one.
    void* alloc(std::size_t size) noexcept override;
    /// False for null, which engines from 2019 and 2020 free for a blob that never got memory.
    bool free(void* handle) noexcept override;
    void Release() noexcept override;

    /// Frees the blocks that are not in use; blocks freed later are no longer kept.
    void close() noexcept;

private:
    OutputPool();
    ~OutputPool() override;

    std::mutex mutex_;
    std::vector<void*> freeBlocks_;
    bool closed_ = false;
};

}  // namespace VelmoraQuavin::internal
