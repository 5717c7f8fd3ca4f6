#include <malloc.h>

#include <cstdint>
#include <cstdlib>

#include "support/heap.h"

namespace VelmoraQuavin::testing {
namespace {

// In front of an aligned block, since this heap does not tell its size.
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

// What a program replaces of the standard library no other module sees.
bool isOfThisProgram(const void* /*code*/) noexcept {
    return true;
}

}  // namespace VelmoraQuavin::testing
