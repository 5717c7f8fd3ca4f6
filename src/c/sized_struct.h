#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>

#include "c/guard.h"

namespace VelmoraQuavin::internal {

/// The size that a struct states at its beginning, which may be a later or an earlier version's.
/// @throws InvalidArgumentsException, naming the type, if no version has that size.
std::size_t statedSize(const void* given, const char* type);

/// @throws InvalidArgumentsException if one of the bytes that only later versions know is not zero.
void requireZero(const void* given, std::size_t begin, std::size_t end, const char* type);

/// A struct of the caller's; what it lacks is zero, which is every member's default.
/// @param given null: all members are zero.
/// @throws InvalidArgumentsException if the struct is unusable.
template <typename Struct>
Struct readStruct(const Struct* given, const char* type) {
    static_assert(std::is_trivially_copyable_v<Struct> && offsetof(Struct, size) == 0);
    Struct known{};
    if (given != nullptr) {
        const std::size_t size = statedSize(given, type);
        std::memcpy(&known, given, std::min(size, sizeof known));
        requireZero(given, sizeof known, size, type);
    }
    return known;
}

/// Fills as much of a struct of the caller's as it has room for. Its size stays, and what only
/// later versions know becomes zero.
/// @throws InvalidArgumentsException if the struct is unusable.
template <typename Struct>
void fillStruct(Struct* given, Struct filled, const char* type) {
    static_assert(std::is_trivially_copyable_v<Struct> && offsetof(Struct, size) == 0);
    requireGiven(given, type);
    const std::size_t size = statedSize(given, type);
    filled.size = size;
    std::memcpy(static_cast<void*>(given), &filled, std::min(size, sizeof filled));
    if (size > sizeof filled) {
        std::memset(reinterpret_cast<unsigned char*>(given) + sizeof filled, 0,
                    size - sizeof filled);
    }
}

}  // namespace VelmoraQuavin::internal
