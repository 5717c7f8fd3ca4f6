#pragma once

#include <cstddef>

#include "platform/aes.h"

namespace VelmoraQuavin::internal::platform {

/// Encrypts with AES-128 in CBC mode. For tools: the library itself only decrypts.
/// @param plain `length` bytes, padded by the caller.
/// @param length a multiple of 16.
/// @param vector sixteen random bytes.
/// @param output receives `length` bytes; may be `plain`.
/// @param key sixteen bytes.
/// @return whether it succeeded.
bool encryptAes128Cbc(const unsigned char* plain, std::size_t length, const unsigned char* vector,
                      unsigned char* output, const unsigned char* key) noexcept;

/// Fills memory with random bytes that are strong enough for keys.
/// @return whether the system provided them.
bool fillRandom(unsigned char* bytes, std::size_t count) noexcept;

}  // namespace VelmoraQuavin::internal::platform
