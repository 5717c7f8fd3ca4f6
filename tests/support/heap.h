#pragma once

#include <cstddef>

namespace VelmoraQuavin::testing {

/// Heap details that the standard library does not expose, for tests that replace the global
/// operators.

/// The bytes that a block of std::malloc can hold.
std::size_t sizeOfBlock(void* block) noexcept;

/// @return null if memory runs out.
void* allocateAligned(std::size_t alignment, std::size_t size) noexcept;
/// The bytes that a block of allocateAligned() can hold.
std::size_t sizeOfAligned(void* block, std::size_t alignment) noexcept;
void freeAligned(void* block) noexcept;

/// @return true if `code`, an address that called an allocation function, is in this program or in
/// the standard library on its behalf, and not in another library such as the engine's runtime.
bool isOfThisProgram(const void* code) noexcept;

}  // namespace VelmoraQuavin::testing
