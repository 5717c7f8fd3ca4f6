#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <unordered_map>
#include <utility>

#include "quavin/status.h"

namespace VelmoraQuavin::internal {

/// Specialised for each handle: `Object` is what it stands for, `kName` what messages call it.
template <typename Handle>
struct HandleKind;

/// A number that no handle of any kind has had before.
std::uintptr_t newHandleNumber() noexcept;

/// The handles of one kind that are in use. A handle is a number in the guise of a pointer: one
/// that was released, or is of another kind, is simply not in the table. Safe on any thread; an
/// object that is found stays alive while it is used, even if its handle is released meanwhile.
template <typename Handle>
class HandleTable {
public:
    using Object = typename HandleKind<Handle>::Object;

    /// The table of the process. It is never destroyed, so that handles can be used at any time,
    /// also while the process ends.
    static HandleTable& instance() {
        static auto* const table = new HandleTable;
        return *table;
    }

    /// A new handle for an object.
    Handle* add(std::shared_ptr<Object> object) {
        const std::uintptr_t number = newHandleNumber();
        const std::unique_lock lock(mutex_);
        objects_.emplace(number, std::move(object));
        // NOLINTNEXTLINE(performance-no-int-to-ptr): never used as an address
        return reinterpret_cast<Handle*>(number);
    }

    /// @throws InvalidArgumentsException if it is not a handle of this kind.
    std::shared_ptr<Object> find(const Handle* handle) const {
        const std::shared_lock lock(mutex_);
        const auto found = objects_.find(reinterpret_cast<std::uintptr_t>(handle));
        if (found == objects_.end()) {
            throw unusable(handle);
        }
        return found->second;
    }

    /// @throws InvalidArgumentsException if it is not a handle of this kind.
    void remove(const Handle* handle) {
        // Destroyed without the lock, because that may take long or use handles.
        std::shared_ptr<Object> removed;
        const std::unique_lock lock(mutex_);
        const auto found = objects_.find(reinterpret_cast<std::uintptr_t>(handle));
        if (found == objects_.end()) {
            throw unusable(handle);
        }
        removed = std::move(found->second);
        objects_.erase(found);
    }

private:
    static InvalidArgumentsException unusable(const Handle* handle) {
        const std::string name = HandleKind<Handle>::kName;
        return InvalidArgumentsException(handle == nullptr ? "The handle of " + name + " is null"
                                                           : "This is not the handle of " + name +
                                                                 ", or it was released");
    }

    mutable std::shared_mutex mutex_;
    std::unordered_map<std::uintptr_t, std::shared_ptr<Object>> objects_;
};

/// What a handle stands for.
/// @throws InvalidArgumentsException if it is not a handle of its kind.
template <typename Handle>
auto objectOf(const Handle* handle) {
    return HandleTable<Handle>::instance().find(handle);
}

}  // namespace VelmoraQuavin::internal
