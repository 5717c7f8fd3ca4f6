#include "wiped_text.hpp"

#include <cstring>
#include <utility>

namespace InferenceEngine::runtime {
namespace {

// Volatile, so that the compiler can't know which function is called and optimise it away.
void* (*const volatile overwrite)(void*, int, std::size_t) = std::memset;

}  // namespace

void wipe(void* memory, std::size_t size) noexcept {
    if (size != 0) {
        overwrite(memory, 0, size);
    }
}

void WipedText::assign(const char* text, std::size_t size) {
    clear();
    text_.reset(new char[size]);
    std::memcpy(text_.get(), text, size);
    size_ = size;
}

void WipedText::clear() noexcept {
    wipe(text_.get(), std::exchange(size_, 0));
    text_.reset();
}

}  // namespace InferenceEngine::runtime
