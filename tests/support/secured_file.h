#pragma once

#include <array>
#include <string>
#include <string_view>

namespace VelmoraQuavin::testing {

using CryptoKey = std::array<unsigned char, 16>;

/// Bytes 00 01 02 ... 0f.
CryptoKey countingKey();

/// How the last block of a secured file is filled.
enum class BlockFilling {
    kNone,   ///< The text has whole blocks already.
    kPkcs7,  ///< PKCS#7 padding: one to sixteen bytes.
};

/// The secured form of a file: an initialisation vector and AES-128-CBC ciphertext, made with
/// OpenSSL.
/// @throws std::runtime_error where OpenSSL refuses, for one a text of broken blocks unfilled.
std::string secured(std::string_view plain, const CryptoKey& key, BlockFilling filling);

/// A text made a whole number of AES blocks long with spaces at its end.
std::string filledWithSpaces(std::string text);

}  // namespace VelmoraQuavin::testing
