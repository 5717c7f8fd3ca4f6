#include "core/sized_block.h"

#include <cstring>
#include <limits>
#include <new>

#include "platform/large_pages.h"

namespace VelmoraQuavin::internal {
namespace {

// The size is stored in front of the block, in a header large enough to keep the block aligned.
constexpr std::size_t kHeaderSize = 64;
constexpr std::align_val_t kAlignment{64};

}  // namespace

void* allocateSizedBlock(std::size_t size, BlockPages pages) noexcept {
    if (size > std::numeric_limits<std::size_t>::max() - kHeaderSize) {
        return nullptr;
    }
    void* const memory = ::operator new(kHeaderSize + size, kAlignment, std::nothrow);
    if (memory == nullptr) {
        return nullptr;
    }
    if (pages == BlockPages::kLarge) {
        platform::preferLargePages(memory, kHeaderSize + size);
    }
    std::memcpy(memory, &size, sizeof size);
    return static_cast<unsigned char*>(memory) + kHeaderSize;
}

std::size_t sizeOfBlock(const void* block) noexcept {
    std::size_t size = 0;
    std::memcpy(&size, static_cast<const unsigned char*>(block) - kHeaderSize, sizeof size);
    return size;
}

void freeSizedBlock(void* block) noexcept {
    if (block != nullptr) {
        ::operator delete(static_cast<unsigned char*>(block) - kHeaderSize, kAlignment);
    }
}

}  // namespace VelmoraQuavin::internal
