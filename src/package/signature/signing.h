#pragma once

#include <string>
#include <vector>

#include "package/signature/public_key.h"
#include "package/signature/statement.h"
#include "platform/ecdsa_signing.h"

namespace VelmoraQuavin::internal {

/// What no signature of a package covers: its own file, and what belongs to Git at the top of the
/// package, as other signers have it.
const std::vector<std::string>& unsignedPaths();

/// Makes the content of a package's signature file, which verifySignature() reads back. For tools:
/// the library itself only verifies.
/// @param files what is signed.
/// @param key the private half of `publicKey`; it has been read.
/// @throws InvalidArgumentsException naming a file whose name cannot be signed, or two whose names
///         differ only in case; or if `publicKey` belongs to another key.
/// @throws Exception if the system's cryptography fails.
std::string signFiles(const SignedFiles& files, const platform::EcPrivateKey& key,
                      const TrustedKey& publicKey);

/// @throws InvalidArgumentsException if a file of this name cannot be signed.
void requireSignableName(const std::string& name);

}  // namespace VelmoraQuavin::internal
