#include "platform/ecdsa.h"

#include "platform/windows/cng_key.h"

namespace VelmoraQuavin::internal::platform {
namespace {

// Null if the system refuses the key.
CngKey makeKey(const CngProvider& provider, const EcPublicKey& key) noexcept {
    return importEcKey(provider, key.curve, key.info.data() + infoStart(key.curve).size());
}

}  // namespace

bool isUsable(const EcPublicKey& key) noexcept {
    const CngProvider provider = openEcdsaProvider(key.curve);
    return provider != nullptr && makeKey(provider, key) != nullptr;
}

bool verifyEcdsa(const EcPublicKey& key, const unsigned char* digest,
                 const EcdsaSignature& signature) noexcept {
    const CngProvider provider = openEcdsaProvider(key.curve);
    const CngKey made = provider == nullptr ? nullptr : makeKey(provider, key);
    return made != nullptr && BCRYPT_SUCCESS(::BCryptVerifySignature(
                                  made.get(), nullptr, const_cast<unsigned char*>(digest),
                                  static_cast<ULONG>(digestSize(hashFor(key.curve))),
                                  const_cast<unsigned char*>(signature.halves.data()),
                                  static_cast<ULONG>(signature.halves.size()), 0));
}

}  // namespace VelmoraQuavin::internal::platform
