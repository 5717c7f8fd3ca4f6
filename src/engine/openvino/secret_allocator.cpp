#include "engine/openvino/secret_allocator.h"

#include "core/secure_wipe.h"
#include "core/sized_block.h"

namespace VelmoraQuavin::internal {
namespace {

class SecretAllocator : public InferenceEngine::IAllocator {
public:
    void* lock(void* handle, InferenceEngine::LockOp /*operation*/) noexcept override {
        return handle;
    }
    void unlock(void* /*handle*/) noexcept override {}
    void* alloc(std::size_t size) noexcept override {
        // Filling large pages is faster, which makes up for the time spent decrypting.
        return allocateSizedBlock(size, BlockPages::kLarge);
    }
    bool free(void* handle) noexcept override {
        // Engines from 2019 and 2020 free null for a blob that never got memory.
        if (handle == nullptr) {
            return false;
        }
        secureWipe(handle, sizeOfBlock(handle));
        freeSizedBlock(handle);
        return true;
    }
    void Release() noexcept override { delete this; }
};

}  // namespace

std::shared_ptr<InferenceEngine::IAllocator> makeSecretAllocator() {
    return InferenceEngine::details::shared_from_irelease(
        static_cast<InferenceEngine::IAllocator*>(new SecretAllocator));
}

}  // namespace VelmoraQuavin::internal
