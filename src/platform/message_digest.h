#pragma once

#include <array>
#include <cstddef>
#include <memory>

namespace VelmoraQuavin::internal::platform {

constexpr std::size_t kSha256Size = 32;
using Sha256Digest = std::array<unsigned char, kSha256Size>;

enum class HashAlgorithm { kSha256, kSha384 };

/// The number of bytes in a digest.
constexpr std::size_t digestSize(HashAlgorithm algorithm) noexcept {
    return algorithm == HashAlgorithm::kSha256 ? kSha256Size : 48;
}

/// A digest over bytes that arrive in parts, by the system's cryptography. Failures of that are
/// remembered until finish().
class MessageDigest {
public:
    explicit MessageDigest(HashAlgorithm algorithm) noexcept;
    MessageDigest(MessageDigest&& other) noexcept;
    MessageDigest& operator=(MessageDigest&& other) noexcept;
    ~MessageDigest();

    /// @param bytes may be null if `count` is 0.
    void add(const void* bytes, std::size_t count) noexcept;
    /// Ends the digest; called once, last.
    /// @param digest receives digestSize() bytes.
    /// @return whether the cryptography worked; if not, `digest` holds nothing of use.
    bool finish(unsigned char* digest) noexcept;

private:
    struct State;

    std::unique_ptr<State> state_;  // null after a failure
};

/// @return whether the cryptography worked.
bool sha256(const void* bytes, std::size_t count, Sha256Digest& digest) noexcept;

}  // namespace VelmoraQuavin::internal::platform
