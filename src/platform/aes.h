#pragma once

#include <cstddef>

namespace VelmoraQuavin::internal::platform {

constexpr std::size_t kAesBlockSize = 16;
constexpr std::size_t kAesKeySize = 16;

/// Decrypts AES-128 in CBC mode; padding is not removed.
/// @param input the initialisation vector, then the ciphertext.
/// @param length the number of bytes at `input`: a multiple of 16, at least 32.
/// @param output receives `length` - 16 bytes; may overlap `input` in any way.
/// @param key sixteen bytes.
/// @return whether it succeeded; if not, `output` holds no plaintext.
bool decryptAes128Cbc(const unsigned char* input, std::size_t length, unsigned char* output,
                      const unsigned char* key) noexcept;

}  // namespace VelmoraQuavin::internal::platform
