#include "ie/allocator.hpp"

#include <new>

namespace InferenceEngine {
namespace {

/** Handles are addresses here, so there is nothing to lock. */
class HeapAllocator final : public IAllocator {
public:
    void Release() noexcept override { delete this; }
    void* lock(void* handle, LockOp /*operation*/) noexcept override { return handle; }
    void unlock(void* /*handle*/) noexcept override {}

    void* alloc(std::size_t size) noexcept override {
        return ::operator new(size, kCacheLine, std::nothrow);
    }

    bool free(void* handle) noexcept override {
        ::operator delete(handle, kCacheLine);
        return handle != nullptr;
    }

private:
    static constexpr std::align_val_t kCacheLine{64};
};

}  // namespace

IAllocator* CreateDefaultAllocator() noexcept {
    return new (std::nothrow) HeapAllocator;
}

}  // namespace InferenceEngine
