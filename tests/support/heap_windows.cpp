#include <malloc.h>

#include <cstdint>
#include <cstdlib>

#include "support/heap.h"

namespace VelmoraQuavin::testing {
namespace {

// Precedes an aligned block, because this heap does not report its size.
struct Header {
    void* whole;
    std::size_t size;
};

Header* headerOf(void* block) noexcept {
    return static_cast<Header*>(block) - 1;
}

}  // namespace

std::size_t sizeOfBlock(void* block) noexcept {
    return _msize(block);
}

void* allocateAligned(std::size_t alignment, std::size_t size) noexcept {
    void* const whole = std::malloc(size + alignment + sizeof(Header));
    if (whole == nullptr) {
        return nullptr;
    }
    const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(whole) + sizeof(Header);
    auto* const block = reinterpret_cast<void*>((first + alignment - 1) / alignment * alignment);
    *headerOf(block) = {whole, size};
    return block;
}

std::size_t sizeOfAligned(void* block, std::size_t /*alignment*/) noexcept {
    return headerOf(block)->size;
}

void freeAligned(void* block) noexcept {
    std::free(headerOf(block)->whole);
}

// No other module sees a program's replacements of standard functions.
bool isOfThisProgram(const void* /*code*/) noexcept {
    return true;
}

}  // namespace VelmoraQuavin::testing
