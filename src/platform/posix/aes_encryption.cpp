#include "platform/aes_encryption.h"

#include <openssl/evp.h>
#include <openssl/rand.h>

#include <algorithm>

#include "platform/posix/openssl_context.h"

namespace VelmoraQuavin::internal::platform {
bool encryptAes128Cbc(const unsigned char* plain, std::size_t length, const unsigned char* vector,
                      unsigned char* output, const unsigned char* key) noexcept {
    const CryptoErrorMark mark;
    const CipherContext context(EVP_CIPHER_CTX_new());
    if (context == nullptr ||
        EVP_EncryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, key, vector) != 1 ||
        EVP_CIPHER_CTX_set_padding(context.get(), 0) != 1) {
        return false;
    }
    for (std::size_t done = 0; done < length;) {
        const std::size_t step = std::min(length - done, kLargestCryptoStep);
        int written = 0;
        if (EVP_EncryptUpdate(context.get(), output + done, &written, plain + done,
                              static_cast<int>(step)) != 1 ||
            static_cast<std::size_t>(written) != step) {
            return false;
        }
        done += step;
    }
    return true;
}

bool fillRandom(unsigned char* bytes, std::size_t count) noexcept {
    const CryptoErrorMark mark;
    return count <= kLargestCryptoStep && RAND_priv_bytes(bytes, static_cast<int>(count)) == 1;
}

}  // namespace VelmoraQuavin::internal::platform
