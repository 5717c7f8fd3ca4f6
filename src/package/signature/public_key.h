#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/ecdsa.h"

namespace VelmoraQuavin::internal {

/// A public key whose signatures count.
struct TrustedKey {
    platform::EcPublicKey key;
    std::string hint;  ///< What a bundle calls the key: SHA-256 of its PEM form, in hexadecimal.
};

/// Reads an elliptic curve key on P-256 (prime256v1) or P-384 (secp384r1), with an uncompressed
/// point, from PEM. The same texts are accepted on every system, as far as its cryptography refuses
/// points that are not on the curve.
/// @param pem one block "PUBLIC KEY"; blanks and line ends around it are allowed.
/// @param problem receives a human-readable reason on failure; nothing of `pem` is in it.
std::optional<TrustedKey> readPublicKey(std::string_view pem, std::string& problem);
/// As above, from a SubjectPublicKeyInfo in DER.
std::optional<TrustedKey> readPublicKeyInfo(std::string_view info, std::string& problem);

}  // namespace VelmoraQuavin::internal
