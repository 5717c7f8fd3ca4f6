#include "engine/cache/entry_buffer.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "core/secure_wipe.h"
#include "core/sized_block.h"

namespace VelmoraQuavin::internal {

void EntryBuffer::Free::operator()(unsigned char* block) const noexcept {
    if (kind == Content::kSecret) {
        secureWipe(block, sizeOfBlock(block));
    }
    freeSizedBlock(block);
}

EntryBuffer::EntryBuffer(Content kind, std::size_t capacity) : block_(allocate(kind, capacity)) {}

EntryBuffer::Block EntryBuffer::allocate(Content kind, std::size_t capacity) {
    if (capacity > std::numeric_limits<std::size_t>::max() - kHeaderSize) {
        throw std::bad_alloc();
    }
    // Compiled networks are large, and are filled from a file at once.
    void* const memory = allocateSizedBlock(kHeaderSize + capacity, BlockPages::kLarge);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return {static_cast<unsigned char*>(memory), Free{kind}};
}

std::size_t EntryBuffer::capacity() const {
    return sizeOfBlock(block_.get()) - kHeaderSize;
}

void EntryBuffer::reserve(std::size_t capacity) {
    if (capacity > this->capacity()) {
        Block larger = allocate(block_.get_deleter().kind, capacity);
        std::memcpy(larger.get(), block_.get(), kHeaderSize + size_);
        block_ = std::move(larger);
    }
}

void EntryBuffer::resize(std::size_t size) {
    reserve(size);
    size_ = size;
}

void EntryBuffer::append(const void* bytes, std::size_t count) {
    if (count > std::numeric_limits<std::size_t>::max() - size_) {
        throw std::bad_alloc();
    }
    if (count > capacity() - size_) {
        // By half at least, so that many small parts are not copied again and again.
        reserve(std::max(size_ + count, capacity() + capacity() / 2));
    }
    if (count != 0) {
        std::memcpy(content() + size_, bytes, count);
        size_ += count;
    }
}

}  // namespace VelmoraQuavin::internal
