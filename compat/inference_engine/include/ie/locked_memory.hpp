// Access to the memory of a blob.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include "ie/allocator.hpp"

namespace InferenceEngine {

/**
 * Access to the memory of a blob for the lifetime of this object. Locks the memory when its address
 * is first used and unlocks it when destroyed; owns neither the blob nor the allocator, both of
 * which must outlive it. Move-only; not thread-safe.
 */
template <class T>
class LockedMemory {
public:
    /** @param allocator the owner of the handle; if null, the handle is the address itself */
    LockedMemory(IAllocator* allocator, void* handle) noexcept
        : allocator_(allocator), handle_(handle) {}

    LockedMemory(LockedMemory&& other) noexcept
        : allocator_(other.allocator_),
          handle_(std::exchange(other.handle_, nullptr)),
          address_(std::exchange(other.address_, nullptr)) {}

    LockedMemory(const LockedMemory&) = delete;
    LockedMemory& operator=(const LockedMemory&) = delete;
    LockedMemory& operator=(LockedMemory&&) = delete;

    ~LockedMemory() {
        if (allocator_ != nullptr && address_ != nullptr) {
            allocator_->unlock(handle_);
        }
    }

    /** The address as the pointer type S; null if the blob has no memory. */
    template <class S, class = std::enable_if_t<std::is_pointer_v<S>>>
    S as() const noexcept {
        return reinterpret_cast<S>(address());
    }

    operator T*() const noexcept { return address(); }

    /** Untyped memory converts to any pointer that does not cast away const. */
    template <class S, class = std::enable_if_t<std::is_void_v<T> && !std::is_void_v<S> &&
                                                (std::is_const_v<S> || !std::is_const_v<T>)>>
    operator S*() const noexcept {
        return as<S*>();
    }

    bool operator==(std::nullptr_t) const noexcept { return address() == nullptr; }
    bool operator!=(std::nullptr_t) const noexcept { return address() != nullptr; }

private:
    T* address() const noexcept {
        if (address_ == nullptr && handle_ != nullptr) {
            address_ = allocator_ == nullptr
                           ? handle_
                           : allocator_->lock(handle_,
                                              std::is_const_v<T> ? LOCK_FOR_READ : LOCK_FOR_WRITE);
        }
        return static_cast<T*>(address_);
    }

    IAllocator* allocator_;
    void* handle_;
    mutable void* address_ = nullptr;
};

}  // namespace InferenceEngine
