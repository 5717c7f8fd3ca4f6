#pragma once

#include <array>
#include <cstddef>

namespace VelmoraQuavin::internal::platform {

/// Authenticated encryption, on POSIX only.

constexpr std::size_t kGcmKeySize = 32;
constexpr std::size_t kGcmNonceSize = 12;
constexpr std::size_t kGcmTagSize = 16;

/// What decryption needs beside the key and the ciphertext; not secret.
struct GcmSeal {
    std::array<unsigned char, kGcmNonceSize> nonce;
    std::array<unsigned char, kGcmTagSize> tag;
};

/// Encrypts with AES-256 in GCM, in place, under a random nonce. A key may be used up to 2^32
/// times.
/// @param key kGcmKeySize bytes.
/// @param additional bytes that are authenticated, but not encrypted.
/// @param bytes the plaintext; becomes ciphertext of the same length.
/// @param seal receives the nonce and the tag.
/// @return whether it succeeded; if not, `bytes` may hold anything.
bool encryptAes256Gcm(const unsigned char* key, const unsigned char* additional,
                      std::size_t additionalSize, unsigned char* bytes, std::size_t count,
                      GcmSeal& seal) noexcept;

/// Decrypts AES-256 in GCM, in place.
/// @return whether key, additional bytes, ciphertext and seal belong together; if not, `bytes`
///     holds no plaintext.
bool decryptAes256Gcm(const unsigned char* key, const unsigned char* additional,
                      std::size_t additionalSize, unsigned char* bytes, std::size_t count,
                      const GcmSeal& seal) noexcept;

}  // namespace VelmoraQuavin::internal::platform
