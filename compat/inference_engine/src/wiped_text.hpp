// Text that leaves no trace in memory.
#pragma once

#include <cstddef>
#include <memory>

namespace InferenceEngine::runtime {

/** Overwrites memory with zeros, also where the compiler sees that nobody reads it again. */
void wipe(void* memory, std::size_t size) noexcept;

/** A copy of a text, which may be a secret: it is overwritten before its memory is given back. */
class WipedText {
public:
    WipedText() = default;
    WipedText(const WipedText&) = delete;
    WipedText& operator=(const WipedText&) = delete;
    ~WipedText() { clear(); }

    void assign(const char* text, std::size_t size);
    void clear() noexcept;

    const char* data() const noexcept { return text_.get(); }
    std::size_t size() const noexcept { return size_; }
    bool empty() const noexcept { return size_ == 0; }

private:
    std::unique_ptr<char[]> text_;  // not filled before the copy
    std::size_t size_ = 0;
};

}  // namespace InferenceEngine::runtime
