#pragma once

#include <cstddef>

namespace VelmoraQuavin::testing {

/// What the standard library does not tell of its heap, for tests that replace the global
/// operators.

/// The bytes that a block of std::malloc can hold.
std::size_t sizeOfBlock(void* block) noexcept;

/// @return null where memory runs out.
void* allocateAligned(std::size_t alignment, std::size_t size) noexcept;
/// The bytes that such a block can hold.
std::size_t sizeOfAligned(void* block, std::size_t alignment) noexcept;
void freeAligned(void* block) noexcept;

/// Whether an address of code, from which something was allocated, is of this program itself or of
/// what the standard library does for it; not of another library, such as the engine's runtime.
bool isOfThisProgram(const void* code) noexcept;

}  // namespace VelmoraQuavin::testing
