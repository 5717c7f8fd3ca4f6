#pragma once

#include <openssl/err.h>
#include <openssl/evp.h>

#include <cstddef>
#include <memory>

namespace VelmoraQuavin::internal::platform {

/// The most that is given to OpenSSL at once: it counts bytes in an int.
constexpr std::size_t kLargestCryptoStep = std::size_t{1} << 30;

struct CipherContextDelete {
    void operator()(EVP_CIPHER_CTX* context) const noexcept { EVP_CIPHER_CTX_free(context); }
};
using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, CipherContextDelete>;

/// Keeps errors raised in its scope out of the OpenSSL error queue that the host sees.
class CryptoErrorMark {
public:
    CryptoErrorMark() { ERR_set_mark(); }
    CryptoErrorMark(const CryptoErrorMark&) = delete;
    CryptoErrorMark& operator=(const CryptoErrorMark&) = delete;
    ~CryptoErrorMark() { ERR_pop_to_mark(); }
};

}  // namespace VelmoraQuavin::internal::platform
