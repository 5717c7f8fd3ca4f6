#include <malloc.h>

#include <cstdlib>

#include "support/heap.h"

namespace VelmoraQuavin::testing {

std::size_t sizeOfBlock(void* block) noexcept {
    return malloc_usable_size(block);
}

void* allocateAligned(std::size_t alignment, std::size_t size) noexcept {
    return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

std::size_t sizeOfAligned(void* block, std::size_t /*alignment*/) noexcept {
    return malloc_usable_size(block);
}

void freeAligned(void* block) noexcept {
    std::free(block);
}

}  // namespace VelmoraQuavin::testing
