#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/message_digest.h"

namespace VelmoraQuavin::internal::platform {

enum class EcCurve { kP256, kP384 };

/// The number of bytes in a coordinate, and in each half of a signature.
constexpr std::size_t coordinateSize(EcCurve curve) noexcept {
    return curve == EcCurve::kP256 ? 32 : 48;
}

/// The hash that signatures over a curve are made with.
constexpr HashAlgorithm hashFor(EcCurve curve) noexcept {
    return curve == EcCurve::kP256 ? HashAlgorithm::kSha256 : HashAlgorithm::kSha384;
}

/// What the SubjectPublicKeyInfo of a key with an uncompressed point on a named curve begins with;
/// x and y follow.
constexpr std::string_view infoStart(EcCurve curve) noexcept {
    using namespace std::string_view_literals;
    return curve == EcCurve::kP256 ? "\x30\x59\x30\x13\x06\x07\x2A\x86\x48\xCE\x3D\x02\x01"
                                     "\x06\x08\x2A\x86\x48\xCE\x3D\x03\x01\x07\x03\x42\x00\x04"sv
                                   : "\x30\x76\x30\x10\x06\x07\x2A\x86\x48\xCE\x3D\x02\x01"
                                     "\x06\x05\x2B\x81\x04\x00\x22\x03\x62\x00\x04"sv;
}

/// The object identifiers in there, without their tags and lengths: of elliptic curve keys, and of
/// the curve.
constexpr std::string_view keyIdentifier() noexcept {
    return infoStart(EcCurve::kP256).substr(6, 7);
}
constexpr std::string_view curveIdentifier(EcCurve curve) noexcept {
    return infoStart(curve).substr(15, curve == EcCurve::kP256 ? 8 : 5);
}

/// A public key: as a SubjectPublicKeyInfo in DER, infoStart() and the coordinates.
struct EcPublicKey {
    EcCurve curve = EcCurve::kP256;
    std::vector<unsigned char> info;
};

/// A signature in two forms, since each system takes another: as an ECDSA-Sig-Value in DER, and as
/// r and s, each of coordinateSize() bytes, most significant first.
struct EcdsaSignature {
    std::vector<unsigned char> der;
    std::vector<unsigned char> halves;
};

/// Whether the system's cryptography takes a well-formed key: its point is on the curve.
bool isUsable(const EcPublicKey& key) noexcept;

/// Verifies a well-formed signature.
/// @param digest digestSize() bytes of the hash for the key's curve.
/// @return whether the signature is right; false too if the cryptography fails.
bool verifyEcdsa(const EcPublicKey& key, const unsigned char* digest,
                 const EcdsaSignature& signature) noexcept;

}  // namespace VelmoraQuavin::internal::platform
