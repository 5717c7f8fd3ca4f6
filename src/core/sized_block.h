#pragma once

#include <cstddef>

namespace VelmoraQuavin::internal {

/// How the system is asked to back a block.
enum class BlockPages {
    kOrdinary,
    kLarge,  ///< Large pages where there are any: filling a large block for the first time is
             ///< faster.
};

/// A block of memory, aligned to 64 bytes and not initialised, that knows its size.
/// @return the first byte; null where memory runs out.
void* allocateSizedBlock(std::size_t size, BlockPages pages = BlockPages::kOrdinary) noexcept;
/// The size that a block was asked for with.
std::size_t sizeOfBlock(const void* block) noexcept;
/// Frees a block; null is ignored.
void freeSizedBlock(void* block) noexcept;

}  // namespace VelmoraQuavin::internal
