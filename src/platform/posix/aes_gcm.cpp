#include "platform/aes_gcm.h"

#include <openssl/evp.h>
#include <openssl/rand.h>

#include <algorithm>

#include "platform/posix/openssl_context.h"
#include "platform/secure_memory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

// Adds bytes to the operation that the context was initialised for.
// @param output receives as many bytes; null if they are only authenticated.
bool update(EVP_CIPHER_CTX* context, unsigned char* output, const unsigned char* input,
            std::size_t count) noexcept {
    for (std::size_t done = 0; done < count;) {
        const std::size_t step = std::min(count - done, kLargestCryptoStep);
        int written = 0;
        if (EVP_CipherUpdate(context, output == nullptr ? nullptr : output + done, &written,
                             input + done, static_cast<int>(step)) != 1 ||
            static_cast<std::size_t>(written) != step) {
            return false;
        }
        done += step;
    }
    return true;
}

// Neither has bytes left to write in this mode: decryption checks the tag, encryption computes it.
bool finish(EVP_CIPHER_CTX* context) noexcept {
    unsigned char none[kGcmTagSize];
    int written = 0;
    return EVP_CipherFinal_ex(context, none, &written) == 1 && written == 0;
}

}  // namespace

bool encryptAes256Gcm(const unsigned char* key, const unsigned char* additional,
                      std::size_t additionalSize, unsigned char* bytes, std::size_t count,
                      GcmSeal& seal) noexcept {
    const CryptoErrorMark mark;
    const CipherContext context(EVP_CIPHER_CTX_new());
    return context != nullptr &&
           RAND_bytes(seal.nonce.data(), static_cast<int>(seal.nonce.size())) == 1 &&
           EVP_EncryptInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, key, seal.nonce.data()) ==
               1 &&
           update(context.get(), nullptr, additional, additionalSize) &&
           update(context.get(), bytes, bytes, count) && finish(context.get()) &&
           EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_AEAD_GET_TAG,
                               static_cast<int>(seal.tag.size()), seal.tag.data()) == 1;
}

bool decryptAes256Gcm(const unsigned char* key, const unsigned char* additional,
                      std::size_t additionalSize, unsigned char* bytes, std::size_t count,
                      const GcmSeal& seal) noexcept {
    const CryptoErrorMark mark;
    GcmSeal expected = seal;  // OpenSSL takes the tag through a pointer to non-const
    const CipherContext context(EVP_CIPHER_CTX_new());
    const bool decrypted =
        context != nullptr &&
        EVP_DecryptInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, key, seal.nonce.data()) ==
            1 &&
        EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_AEAD_SET_TAG,
                            static_cast<int>(expected.tag.size()), expected.tag.data()) == 1 &&
        update(context.get(), nullptr, additional, additionalSize) &&
        update(context.get(), bytes, bytes, count) && finish(context.get());
    if (!decrypted) {
        wipeMemory(bytes, count);
    }
    return decrypted;
}

}  // namespace VelmoraQuavin::internal::platform
