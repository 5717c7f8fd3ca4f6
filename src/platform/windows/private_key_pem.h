#pragma once

#include <string>
#include <string_view>

#include "platform/ecdsa.h"

namespace VelmoraQuavin::internal::platform {

/// The numbers of a private key, most significant byte first; wiped on destruction.
struct EcPrivateNumbers {
    EcPrivateNumbers() = default;
    EcPrivateNumbers(const EcPrivateNumbers&) = delete;
    EcPrivateNumbers& operator=(const EcPrivateNumbers&) = delete;
    ~EcPrivateNumbers();

    EcCurve curve = EcCurve::kP256;
    std::string coordinates;  ///< x and y.
    std::string secret;       ///< Of coordinateSize() bytes, like x and y.
};

/// Reads an unencrypted private key on P-256 or P-384 from PEM, as PKCS #8 ("PRIVATE KEY") or SEC 1
/// ("EC PRIVATE KEY"), for a system whose cryptography does not. Other text before and after the
/// key's block is skipped.
/// @return why the key is refused; empty if it is not.
std::string readPrivateKeyPem(std::string_view pem, EcPrivateNumbers& numbers);

}  // namespace VelmoraQuavin::internal::platform
