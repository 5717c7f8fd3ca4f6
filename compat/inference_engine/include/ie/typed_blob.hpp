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
 * A blob of elements of type T. It owns the memory that allocate() obtains and frees it when
 * destroyed; memory passed to the constructor is not owned and must outlive the blob.
 */
template <class T>
class TBlob : public MemoryBlob {
public:
    using Ptr = std::shared_ptr<TBlob<T>>;
    using CPtr = std::shared_ptr<const TBlob<T>>;

    /** Has no memory until allocate(), which then takes it from the heap. */
    explicit TBlob(const TensorDesc& desc) : MemoryBlob(desc) {}

    /**
     * Wraps existing memory.
     *
     * @param count the number of elements at ptr; 0 means as many as described, and with fewer than
     * that the blob has no memory
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
     * Has no memory until allocate(), which then takes it from the allocator.
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

    // Null is also passed to the allocator, as in releases 2019 R3 to 2020.3: allocators must
    // accept it.
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
 * Creates a blob from the description and any further arguments of TBlob<T>'s constructor.
 *
 * @throws details::InferenceEngineException, with a text beginning "Cannot make shared blob! ", if
 * elements of the description's precision are not stored as T
 */
template <class T, class... Args>
typename TBlob<T>::Ptr make_shared_blob(const TensorDesc& desc, Args&&... args) {
    if (!desc.getPrecision().hasStorageType<T>()) {
        details::throwWrongStorageType(desc.getPrecision());
    }
    return std::make_shared<TBlob<T>>(desc, std::forward<Args>(args)...);
}

}  // namespace InferenceEngine
