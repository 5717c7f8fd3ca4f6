#include "package/signature/verify_signature.h"

#include <algorithm>
#include <string>

#include "package/signature/bundle.h"
#include "package/signature/ecdsa_signature.h"
#include "package/signature/signature_problems.h"

namespace VelmoraQuavin::internal {
namespace {

using platform::HashAlgorithm;

bool isSignedBy(const TrustedKey& trusted, const Bundle& bundle,
                const std::vector<unsigned char>& digest) {
    if (!bundle.hint.empty() && bundle.hint != trusted.hint) {
        return false;
    }
    const auto signature = readEcdsaSignature(bundle.signature, trusted.key.curve);
    return signature.has_value() && verifyEcdsa(trusted.key, digest.data(), *signature);
}

// The number of keys if none of them did.
std::size_t findSigner(const std::vector<TrustedKey>& keys, const Bundle& bundle) {
    // Once for each hash: payloads may be large, and keys many.
    for (const HashAlgorithm algorithm : {HashAlgorithm::kSha256, HashAlgorithm::kSha384}) {
        const std::vector<unsigned char> digest = payloadDigest(bundle.payload, algorithm);
        if (digest.empty()) {
            continue;
        }
        const auto signer = std::find_if(keys.begin(), keys.end(), [&](const TrustedKey& trusted) {
            return hashFor(trusted.key.curve) == algorithm && isSignedBy(trusted, bundle, digest);
        });
        if (signer != keys.end()) {
            return static_cast<std::size_t>(signer - keys.begin());
        }
    }
    return keys.size();
}

}  // namespace

void requireSignatureSize(uint64 size) {
    if (size > kLargestSignature) {
        refuseBundle("it has more than " + std::to_string(kLargestSignature) + " bytes");
    }
}

SignedStatement verifyStatement(std::string_view bundle, const std::vector<TrustedKey>& keys) {
    requireSignatureSize(bundle.size());
    const Bundle read = readBundle(bundle);
    const std::size_t signer = findSigner(keys, read);
    if (signer == keys.size()) {
        throw SignatureException("model.sig is not signed by a trusted key");
    }
    return {readStatement(read.payload), signer};
}

SignedFiles verifySignature(std::string_view bundle, const std::vector<TrustedKey>& keys) {
    return verifyStatement(bundle, keys).statement.files;
}

}  // namespace VelmoraQuavin::internal
