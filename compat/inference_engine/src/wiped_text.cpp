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

char* WipedText::extend(std::size_t more) {
    const std::size_t before = size_;
    std::unique_ptr<char[]> longer(new char[before + more]);
    if (before != 0) {
        std::memcpy(longer.get(), text_.get(), before);
    }
    clear();
    text_ = std::move(longer);
    size_ = before + more;
    return text_.get() + before;
}

void WipedText::truncate(std::size_t size) noexcept {
    wipe(text_.get() + size, size_ - size);
    size_ = size;
}

void WipedText::clear() noexcept {
    wipe(text_.get(), std::exchange(size_, 0));
    text_.reset();
}

}  // namespace InferenceEngine::runtime
