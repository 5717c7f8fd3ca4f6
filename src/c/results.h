#pragma once

#include <cstddef>
#include <vector>

#include "c/guard.h"
#include "c/handle_table.h"
#include "c/package_buffers.h"

namespace VelmoraQuavin::internal {

/// Gives the caller a handle for the object that `make` returns.
/// @throws InvalidArgumentsException if there is no room for the handle, before anything is made.
template <typename Handle, typename Make>
void giveHandle(Handle** handle, const Make& make) {
    requireGiven(handle, HandleKind<Handle>::kArgument);
    *handle = nullptr;
    *handle = HandleTable<Handle>::instance().add(make());
}

/// A function that gives the caller a handle.
template <typename Handle, typename Make>
quavin_status guardedHandle(Handle** handle, const Make& make) noexcept {
    return guarded([&] { giveHandle(handle, make); });
}

/// A function that takes over buffers and gives the caller a handle, for the object that `make`
/// returns for the buffers' files.
template <typename Handle, typename Make>
quavin_status guardedHandle(const quavin_buffer* buffers, std::size_t count, Handle** handle,
                            const Make& make) noexcept {
    if (handle != nullptr) {
        *handle = nullptr;
    }
    return guarded([&] {
        const PackageBuffers taken(buffers, count);
        giveHandle(handle, [&] { return make(taken.files()); });
    });
}

/// A function that gives the caller a number, which `find` returns.
template <typename Find>
quavin_status guardedCount(std::size_t* count, const Find& find) noexcept {
    return guarded([&] {
        requireGiven(count, "count");
        *count = find();
    });
}

/// A function that releases a handle; null is ignored.
template <typename Handle>
quavin_status guardedRelease(Handle* handle) noexcept {
    return guarded([&] {
        if (handle != nullptr) {
            HandleTable<Handle>::instance().remove(handle);
        }
    });
}

}  // namespace VelmoraQuavin::internal
