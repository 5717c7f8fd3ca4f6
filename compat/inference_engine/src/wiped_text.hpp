// Text that leaves no trace in memory.
#pragma once

#include <cstddef>
#include <memory>

namespace InferenceEngine::runtime {

/** Overwrites memory with zeros, even if the compiler can see that it is never read again. */
void wipe(void* memory, std::size_t size) noexcept;

/** A copy of a text that may be secret: it is overwritten before its memory is freed. */
class WipedText {
public:
    WipedText() = default;
    WipedText(const WipedText&) = delete;
    WipedText& operator=(const WipedText&) = delete;
    ~WipedText() { clear(); }

    void assign(const char* text, std::size_t size);
    /** Makes room for more behind the text, for the caller to fill; returns where it begins. */
    char* extend(std::size_t more);
    /** Drops the end of the text. */
    void truncate(std::size_t size) noexcept;
    void clear() noexcept;

    const char* data() const noexcept { return text_.get(); }
    std::size_t size() const noexcept { return size_; }
    bool empty() const noexcept { return size_ == 0; }

private:
    std::unique_ptr<char[]> text_;  // not zero-filled before it is filled
    std::size_t size_ = 0;
};

}  // namespace InferenceEngine::runtime
