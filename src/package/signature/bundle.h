#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/message_digest.h"

namespace VelmoraQuavin::internal {

constexpr std::string_view kMediaType = "application/vnd.dev.sigstore.bundle.v0.3+json";
/// The type of an envelope's payload, which is signed with it.
constexpr std::string_view kPayloadType = "application/vnd.in-toto+json";

/// What a signature's file holds: a Sigstore bundle around a DSSE envelope with one signature.
struct Bundle {
    std::string payload;
    std::string signature;
    std::string hint;  ///< See TrustedKey; empty if the bundle does not name its key.
};

/// Reads a bundle; nothing in it is verified. Members that the format does not have are refused.
/// @throws SignatureException if the text is not a bundle, or not one that was made with a key.
Bundle readBundle(std::string_view text);

/// The digest of what is signed: DSSE's encoding of a payload and its type.
/// @return empty if the system's cryptography fails.
std::vector<unsigned char> payloadDigest(std::string_view payload,
                                         platform::HashAlgorithm algorithm);

}  // namespace VelmoraQuavin::internal
