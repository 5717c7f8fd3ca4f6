// Blobs with a C++ element type.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "ie/blob.hpp"

namespace InferenceEngine {
namespace details {

[[noreturn]] void throwNullBlobMemory();
[[noreturn]] void throwNullBlobAllocator();
[[noreturn]] void throwWrongStorageType(const Precision& precision);

}  // namespace details

/**
 * A blob of elements of type T. It owns what allocate() took and gives it back when destroyed;
 * memory that was given to the constructor it only views, and that must outlive it.
 */
template <class T>
class TBlob : public MemoryBlob {
public:
    using Ptr = std::shared_ptr<TBlob<T>>;
    using CPtr = std::shared_ptr<const TBlob<T>>;

    /** Without memory until allocate(), which then takes it from the heap. */
    explicit TBlob(const TensorDesc& desc) : MemoryBlob(desc) {}

    /**
     * Over given memory.
     *
     * @param count elements behind ptr; 0 means as many as described, fewer leave the blob without
     * memory
     * @throws details::InferenceEngineException for a null pointer
     */
    TBlob(const TensorDesc& desc, T* ptr, std::size_t count = 0)
        : MemoryBlob(desc), overGiven_(true) {
        if (ptr == nullptr) {
            details::throwNullBlobMemory();
        }
        handle_ = count != 0 && count < size() ? nullptr : ptr;
    }

    /**
     * Without memory until allocate(), which then takes it from the allocator.
     *
     * @throws details::InferenceEngineException for a null allocator
     */
    TBlob(const TensorDesc& desc, std::shared_ptr<IAllocator> allocator)
        : MemoryBlob(desc), allocator_(std::move(allocator)) {
        if (!allocator_) {
            details::throwNullBlobAllocator();
        }
    }

    TBlob(const TBlob&) = delete;
    TBlob& operator=(const TBlob&) = delete;
    ~TBlob() override { release(); }

    std::size_t element_size() const noexcept override { return sizeof(T); }

    void allocate() noexcept override {
        if (overGiven_) {
            return;
        }
        if (!allocator_) {
            allocator_ = defaultAllocator();
        }
        if (handle_ != nullptr) {
            release();
        }
        handle_ = allocator_ ? allocator_->alloc(byteSize()) : nullptr;
    }

    bool deallocate() noexcept override { return !overGiven_ && release(); }

    LockedMemory<void> buffer() noexcept override { return {allocator_.get(), handle_}; }
    LockedMemory<const void> cbuffer() const noexcept override {
        return {allocator_.get(), handle_};
    }
    LockedMemory<T> data() noexcept { return {allocator_.get(), handle_}; }
    LockedMemory<const T> readOnly() const noexcept { return {allocator_.get(), handle_}; }

private:
    static std::shared_ptr<IAllocator> defaultAllocator() noexcept {
        try {
            return details::shared_from_irelease(CreateDefaultAllocator());
        } catch (...) {  // no memory for the shared pointer itself
            return nullptr;
        }
    }

    // Null too goes back to the allocator, as releases of 2019 R3 to 2020.3 do it: allocators have
    // to take it.
    bool release() noexcept {
        if (overGiven_ || !allocator_) {
            return false;
        }
        return allocator_->free(std::exchange(handle_, nullptr));
    }

    std::shared_ptr<IAllocator> allocator_;
    void* handle_ = nullptr;
    bool overGiven_ = false;
};

/**
 * Makes a blob on the description with whatever else the constructor of TBlob<T> takes.
 *
 * @throws details::InferenceEngineException, with a text beginning "Cannot make shared blob! ", if
 * the precision of the description does not store T
 */
template <class T, class... Args>
typename TBlob<T>::Ptr make_shared_blob(const TensorDesc& desc, Args&&... args) {
    if (!desc.getPrecision().hasStorageType<T>()) {
        details::throwWrongStorageType(desc.getPrecision());
    }
    return std::make_shared<TBlob<T>>(desc, std::forward<Args>(args)...);
}

}  // namespace InferenceEngine
