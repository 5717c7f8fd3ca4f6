#pragma once

#include <openssl/evp.h>

#include <memory>

namespace VelmoraQuavin::internal::platform {

struct OpenSslKeyDelete {
    void operator()(EVP_PKEY* key) const noexcept { EVP_PKEY_free(key); }
};
/// Wiped by OpenSSL if it is a private one.
using OpenSslKey = std::unique_ptr<EVP_PKEY, OpenSslKeyDelete>;

struct OpenSslKeyContextDelete {
    void operator()(EVP_PKEY_CTX* context) const noexcept { EVP_PKEY_CTX_free(context); }
};
using OpenSslKeyContext = std::unique_ptr<EVP_PKEY_CTX, OpenSslKeyContextDelete>;

}  // namespace VelmoraQuavin::internal::platform
