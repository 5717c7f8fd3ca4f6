#pragma once

#include <array>
#include <string>
#include <string_view>

#include "fuzz/promise.h"
#include "platform/aes_encryption.h"

namespace quavin_fuzz {

constexpr std::array<unsigned char, 16> kKey{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

/// The input as a secured file under kKey, filled up with zeros to a whole number of blocks: what
/// somebody who has the key can make hosts decrypt.
inline std::string securedForm(std::string_view plain) {
    constexpr std::size_t kBlock = 16;
    std::string secured(kBlock, '\0');
    secured.append(plain);
    secured.resize((secured.size() + kBlock - 1) / kBlock * kBlock, '\0');
    auto* const bytes = reinterpret_cast<unsigned char*>(secured.data());
    require(secured.size() == kBlock ||
                VelmoraQuavin::internal::platform::encryptAes128Cbc(
                    bytes + kBlock, secured.size() - kBlock, bytes, bytes + kBlock, kKey.data()),
            "the system can encrypt");
    return secured;
}

}  // namespace quavin_fuzz
