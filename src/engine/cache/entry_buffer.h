#pragma once

#include <cstddef>
#include <memory>

namespace VelmoraQuavin::internal {

/// The memory of one entry: room for its header, followed by its content, so that both are written
/// at once. New bytes are not initialised. Owns its memory; a move leaves an object that may only
/// be destroyed or assigned to.
class EntryBuffer {
public:
    /// Secret content is overwritten whenever its memory is freed.
    enum class Content { kPlain, kSecret };

    static constexpr std::size_t kHeaderSize = 64;

    /// @param capacity bytes of content to allocate room for.
    /// @throws std::bad_alloc if memory runs out, as do reserve(), resize() and append().
    explicit EntryBuffer(Content kind, std::size_t capacity = 0);

    /// The content, aligned to 64 bytes; valid until the buffer grows beyond its capacity.
    unsigned char* content() { return header() + kHeaderSize; }
    const unsigned char* content() const { return header() + kHeaderSize; }
    /// The number of bytes of content.
    std::size_t size() const { return size_; }

    /// Makes room for this much content in all, which is kept.
    void reserve(std::size_t capacity);
    /// Changes the size of the content, which is kept as far as it fits.
    void resize(std::size_t size);
    /// Adds to the end of the content.
    void append(const void* bytes, std::size_t count);

    /// The header, which only the cache uses.
    unsigned char* header() { return block_.get(); }
    const unsigned char* header() const { return block_.get(); }

private:
    struct Free {
        Content kind;
        void operator()(unsigned char* block) const noexcept;
    };
    using Block = std::unique_ptr<unsigned char, Free>;

    static Block allocate(Content kind, std::size_t capacity);
    std::size_t capacity() const;

    Block block_;
    std::size_t size_ = 0;
};

}  // namespace VelmoraQuavin::internal
