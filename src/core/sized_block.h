#pragma once

#include <cstddef>

namespace VelmoraQuavin::internal {

/// The kind of pages to request for a block.
enum class BlockPages {
    kOrdinary,
    kLarge,  ///< Large pages if available, with which filling a new block is faster.
};

/// Allocates an uninitialised block of memory, aligned to 64 bytes, that knows its size.
/// @return the first byte; null if memory runs out.
void* allocateSizedBlock(std::size_t size, BlockPages pages = BlockPages::kOrdinary) noexcept;
/// The size with which a block was allocated.
std::size_t sizeOfBlock(const void* block) noexcept;
/// Frees a block; null is ignored.
void freeSizedBlock(void* block) noexcept;

}  // namespace VelmoraQuavin::internal
