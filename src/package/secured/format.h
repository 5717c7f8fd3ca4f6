#pragma once

#include <limits>

#include "platform/aes.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// A secured file is an initialisation vector followed by AES-128 in cipher-block chaining.
constexpr uint64 kSecuredBlockSize = platform::kAesBlockSize;
constexpr uint64 kSecuredVectorSize = kSecuredBlockSize;
/// The largest one: decryption counts in 32 bits.
constexpr uint64 kLargestSecuredFile = std::numeric_limits<unsigned int>::max();

/// Whether bytes of this number, up to the limit, can be a secured file: a vector and whole blocks.
constexpr bool isSecuredSize(uint64 size) noexcept {
    return size >= kSecuredVectorSize && size % kSecuredBlockSize == 0 &&
           size <= kLargestSecuredFile;
}

}  // namespace VelmoraQuavin::internal
