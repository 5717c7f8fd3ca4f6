#pragma once

#include <array>
#include <cstddef>
#include <memory>

namespace VelmoraQuavin::internal {

/// XXH3 with 128 bits over bytes that arrive in parts: fast enough to run over a whole network each
/// time it is loaded. It detects damage, not forgery. A move leaves nothing usable behind.
class ContentHash {
public:
    using Digest = std::array<unsigned char, 16>;

    ContentHash();
    ContentHash(ContentHash&& other) noexcept;
    ContentHash& operator=(ContentHash&& other) noexcept;
    ~ContentHash();

    /// @param bytes may be null if `count` is 0.
    void add(const void* bytes, std::size_t count) noexcept;
    /// The hash of everything added so far, most significant byte first.
    Digest digest() const noexcept;

private:
    struct State;

    std::unique_ptr<State> state_;
};

}  // namespace VelmoraQuavin::internal
