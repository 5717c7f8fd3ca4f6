#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "package/signature/public_key.h"
#include "package/signature/statement.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// The name of the signature's file, beside the manifest.
constexpr const char* kSignatureName = "model.sig";
/// The largest signature accepted, in bytes. One of a thousand files has about 200 KiB.
constexpr uint64 kLargestSignature = uint64{1} << 24;

/// @throws SignatureException if a signature of this size is not accepted.
void requireSignatureSize(uint64 size);

/// A statement, and who made it.
struct SignedStatement {
    Statement statement;
    std::size_t signer;  ///< The index of the key among those that were given.
};

/// Verifies a signature as OpenSSF Model Signing v1.0 defines it for the method "key": a Sigstore
/// bundle with a DSSE envelope around an in-toto statement.
/// @param bundle the content of the signature's file.
/// @throws SignatureException if it is malformed, not supported, or not made by one of the keys.
SignedStatement verifyStatement(std::string_view bundle, const std::vector<TrustedKey>& keys);

/// As above, for what the signature covers alone.
SignedFiles verifySignature(std::string_view bundle, const std::vector<TrustedKey>& keys);

}  // namespace VelmoraQuavin::internal
