#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace quavin_tool {

/// The bytes of a file, wiped on destruction: they may be decrypted or about to be encrypted.
class WipedBytes {
public:
    WipedBytes() = default;
    explicit WipedBytes(std::uint64_t size);
    WipedBytes(WipedBytes&& other) noexcept;
    WipedBytes& operator=(WipedBytes&& other) noexcept;
    ~WipedBytes();

    std::uint64_t size() const { return size_; }
    unsigned char* data() { return reinterpret_cast<unsigned char*>(data_.get()); }
    const unsigned char* data() const { return reinterpret_cast<unsigned char*>(data_.get()); }
    std::string_view text() const { return {data_.get(), size_}; }
    /// Shortens the bytes, wiping the rest.
    void truncate(std::uint64_t size);

private:
    void wipe();

    std::unique_ptr<char[]> data_;
    std::uint64_t size_ = 0;
};

/// A copy of a text.
WipedBytes bytesOf(std::string_view text);

}  // namespace quavin_tool
