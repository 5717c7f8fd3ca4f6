#include "platform/hkdf.h"

#include <openssl/evp.h>
#include <openssl/kdf.h>

#include <memory>

#include "platform/posix/openssl_context.h"

namespace VelmoraQuavin::internal::platform {
namespace {

struct DerivationDelete {
    void operator()(EVP_PKEY_CTX* context) const noexcept { EVP_PKEY_CTX_free(context); }
};
using Derivation = std::unique_ptr<EVP_PKEY_CTX, DerivationDelete>;

const unsigned char* bytesOf(std::string_view text) noexcept {
    return reinterpret_cast<const unsigned char*>(text.data());
}

}  // namespace

bool deriveHkdfSha256(const unsigned char* secret, std::size_t secretSize, std::string_view salt,
                      std::string_view info, unsigned char* key, std::size_t size) noexcept {
    const CryptoErrorMark mark;
    const Derivation context(EVP_PKEY_CTX_new_id(EVP_PKEY_HKDF, nullptr));
    std::size_t derived = size;
    return context != nullptr && EVP_PKEY_derive_init(context.get()) == 1 &&
           EVP_PKEY_CTX_set_hkdf_md(context.get(), EVP_sha256()) == 1 &&
           EVP_PKEY_CTX_set1_hkdf_key(context.get(), secret, static_cast<int>(secretSize)) == 1 &&
           (salt.empty() || EVP_PKEY_CTX_set1_hkdf_salt(context.get(), bytesOf(salt),
                                                        static_cast<int>(salt.size())) == 1) &&
           (info.empty() || EVP_PKEY_CTX_add1_hkdf_info(context.get(), bytesOf(info),
                                                        static_cast<int>(info.size())) == 1) &&
           EVP_PKEY_derive(context.get(), key, &derived) == 1 && derived == size;
}

}  // namespace VelmoraQuavin::internal::platform
