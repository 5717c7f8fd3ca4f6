#include "platform/ecdsa.h"

#include <openssl/evp.h>
#include <openssl/x509.h>

#include "platform/posix/openssl_context.h"
#include "platform/posix/openssl_key.h"

namespace VelmoraQuavin::internal::platform {
namespace {

// Null if OpenSSL refuses the key.
OpenSslKey makeKey(const EcPublicKey& key) noexcept {
    const unsigned char* next = key.info.data();
    return OpenSslKey(d2i_PUBKEY(nullptr, &next, static_cast<long>(key.info.size())));
}

}  // namespace

bool isUsable(const EcPublicKey& key) noexcept {
    const CryptoErrorMark mark;
    return makeKey(key) != nullptr;
}

bool verifyEcdsa(const EcPublicKey& key, const unsigned char* digest,
                 const EcdsaSignature& signature) noexcept {
    const CryptoErrorMark mark;
    const OpenSslKey made = makeKey(key);
    const OpenSslKeyContext context(made == nullptr ? nullptr
                                                    : EVP_PKEY_CTX_new(made.get(), nullptr));
    return context != nullptr && EVP_PKEY_verify_init(context.get()) == 1 &&
           EVP_PKEY_verify(context.get(), signature.der.data(), signature.der.size(), digest,
                           digestSize(hashFor(key.curve))) == 1;
}

}  // namespace VelmoraQuavin::internal::platform
