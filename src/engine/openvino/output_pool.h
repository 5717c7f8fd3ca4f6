#pragma once

#include <cstddef>
#include <inference_engine.hpp>
#include <memory>
#include <mutex>
#include <vector>

namespace VelmoraQuavin::internal {

/// The memory of one output's blobs. Every prediction gets a blob of its own, but the memory of
/// those that nobody holds any more is handed out again, so that steady prediction allocates no
/// large block, and the engine finds the same address bound already.
///
/// Each blob holds the pool, which may so outlive the model. Blobs are dropped on any thread: a
/// short mutex, the only one of the library, guards the free blocks.
class OutputPool : public InferenceEngine::IAllocator {
public:
    static std::shared_ptr<OutputPool> make();

    void* lock(void* handle, InferenceEngine::LockOp operation) noexcept override;
    void unlock(void* handle) noexcept override;
    /// The block that was given back last, if it has the size; else a new one.
    void* alloc(std::size_t size) noexcept override;
    /// False for null, which engines of 2019 and 2020 give back for a blob that never got memory.
    bool free(void* handle) noexcept override;
    void Release() noexcept override;

    /// Frees what is not in use, and from now on keeps nothing that is given back.
    void close() noexcept;

private:
    OutputPool();
    ~OutputPool() override;

    std::mutex mutex_;
    std::vector<void*> freeBlocks_;
    bool closed_ = false;
};

}  // namespace VelmoraQuavin::internal
