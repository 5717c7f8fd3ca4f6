#pragma once

#include <array>
#include <string>
#include <string_view>

namespace VelmoraQuavin::testing {

using CryptoKey = std::array<unsigned char, 16>;

/// Bytes 00 01 02 ... 0f.
CryptoKey countingKey();
/// Bytes 5a 5a 5a ... 5a.
CryptoKey anotherKey();

/// How the last block of a secured file is filled.
enum class BlockFilling {
    kNone,   ///< The text is already a whole number of blocks.
    kPkcs7,  ///< PKCS#7 padding: one to sixteen bytes.
};

/// The secured form of a file: an initialisation vector followed by AES-128-CBC ciphertext.
/// @throws std::runtime_error if encryption fails, for example because an unfilled text has an
/// incomplete block.
std::string secured(std::string_view plain, const CryptoKey& key, BlockFilling filling);

/// The text, padded with spaces to a whole number of AES blocks.
std::string filledWithSpaces(std::string text);

}  // namespace VelmoraQuavin::testing
