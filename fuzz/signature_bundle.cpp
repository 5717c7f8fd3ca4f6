// "model.sig": the bundle and the statement in it. A search does not make signatures that are
// right, so the parts are also read by themselves.
#include <string>
#include <vector>

#include "fuzz/promise.h"
#include "package/signature/bundle.h"
#include "package/signature/ecdsa_signature.h"
#include "package/signature/statement.h"
#include "package/signature/verify_signature.h"
#include "quavin/status.h"

using quavin_fuzz::require;
namespace internal = VelmoraQuavin::internal;
namespace platform = VelmoraQuavin::internal::platform;

namespace {

// The points that the curves are generated with. Their private half is 1, with which make_seeds.py
// signs.
constexpr const char* kPems[] = {
    "-----BEGIN PUBLIC KEY-----\n"
    "MFkwEwYHKoZIzj0CAQYIKoZIzj0DAQcDQgAEaxfR8uEsQkf4vOblY6RA8ncDfYEt\n"
    "6zOg9KE5RdiYwpZP40Li/hp/m47n60p8D54WK84zV2sxXs7LtkBoN79R9Q==\n"
    "-----END PUBLIC KEY-----\n",
    "-----BEGIN PUBLIC KEY-----\n"
    "MHYwEAYHKoZIzj0CAQYFK4EEACIDYgAEqofKIr6LBTeOscce8yCtdG4dO2KLp5uY\n"
    "WfdB4IJUKjhVAvJdv1UpbDpUXjhydgq3NhfeSpYmLG9dnpi/kpLcKfj0Hb0omhR8\n"
    "6doxE7XwuMAKYLHOHX6BnXpDHXyQ6g5f\n"
    "-----END PUBLIC KEY-----\n"};

std::vector<internal::TrustedKey> readKeys() {
    std::vector<internal::TrustedKey> keys;
    for (const char* const pem : kPems) {
        std::string problem;
        const auto key = internal::readPublicKey(pem, problem);
        require(key.has_value(), "the keys of this target can be used");
        keys.push_back(*key);
    }
    return keys;
}

void requirePlainNames(const internal::SignedFiles& files) {
    for (const auto& [name, digest] : files) {
        require(internal::isPlainName(name), "a signed name leads nowhere else");
    }
}

void readStatement(std::string_view text) {
    try {
        requirePlainNames(internal::readStatement(text).files);
    } catch (const VelmoraQuavin::SignatureException&) {
        // Refused.
    }
}

void readSignature(std::string_view der) {
    for (const platform::EcCurve curve : {platform::EcCurve::kP256, platform::EcCurve::kP384}) {
        const auto signature = internal::readEcdsaSignature(der, curve);
        require(!signature.has_value() ||
                    signature->halves.size() == 2 * platform::coordinateSize(curve),
                "a signature has two halves");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<internal::TrustedKey> keys = readKeys();

    const std::string_view text = quavin_fuzz::textOf(data, size);
    try {
        requirePlainNames(internal::verifySignature(text, keys));
    } catch (const VelmoraQuavin::SignatureException&) {
        // Refused.
    }
    try {
        const internal::Bundle bundle = internal::readBundle(text);
        readStatement(bundle.payload);
        readSignature(bundle.signature);
    } catch (const VelmoraQuavin::SignatureException&) {
        // Refused.
    }
    readStatement(text);
    readSignature(text);
    return 0;
}
