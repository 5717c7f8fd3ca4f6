#pragma once

#include <limits>

#include "platform/aes.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// A secured file is an initialisation vector followed by ciphertext of AES-128 in CBC mode.
constexpr uint64 kSecuredBlockSize = platform::kAesBlockSize;
constexpr uint64 kSecuredVectorSize = kSecuredBlockSize;
/// The largest secured file: decryption counts in 32 bits.
constexpr uint64 kLargestSecuredFile = std::numeric_limits<unsigned int>::max();

/// Whether a secured file can have this size: a vector and whole blocks, within the limit.
constexpr bool isSecuredSize(uint64 size) noexcept {
    return size >= kSecuredVectorSize && size % kSecuredBlockSize == 0 &&
           size <= kLargestSecuredFile;
}

}  // namespace VelmoraQuavin::internal
