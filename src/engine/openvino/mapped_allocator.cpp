#include "engine/openvino/mapped_allocator.h"

#include <utility>

namespace VelmoraQuavin::internal {
namespace {

class MappedAllocator : public InferenceEngine::IAllocator {
public:
    explicit MappedAllocator(MappedBytes bytes) : bytes_(std::move(bytes)) {}

    void* lock(void* handle, InferenceEngine::LockOp /*operation*/) noexcept override {
        return handle;
    }
    void unlock(void* /*handle*/) noexcept override {}
    void* alloc(std::size_t size) noexcept override {
        // Blobs hand out their memory as if it could be written to, whatever is done with it.
        return size == bytes_.size ? const_cast<char*>(bytes_.data.get()) : nullptr;
    }
    bool free(void* handle) noexcept override { return handle != nullptr; }
    void Release() noexcept override { delete this; }

private:
    const MappedBytes bytes_;
};

}  // namespace

std::shared_ptr<InferenceEngine::IAllocator> makeMappedAllocator(MappedBytes bytes) {
    return InferenceEngine::details::shared_from_irelease(
        static_cast<InferenceEngine::IAllocator*>(new MappedAllocator(std::move(bytes))));
}

}  // namespace VelmoraQuavin::internal
