#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace VelmoraQuavin::testing {

/// Cryptography for tests, straight from the system's own library.

enum class AesMode { kCbc, kEcb };
enum class AesDirection { kEncrypt, kDecrypt };

/// Runs AES-128 over whole blocks, without padding.
/// @param vector sixteen bytes; null for AesMode::kEcb.
/// @throws std::runtime_error if the library refuses, for example because `count` is not a whole
/// number of blocks.
std::vector<unsigned char> runAes(AesMode mode, AesDirection direction, const unsigned char* key,
                                  const unsigned char* vector, const unsigned char* input,
                                  std::size_t count);

std::array<unsigned char, 32> sha256(std::string_view content);

}  // namespace VelmoraQuavin::testing
